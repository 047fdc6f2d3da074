#include "shell/SaveStops.h"

#include <array>
#include <string>
#include <vector>

#include "storage/SaveDataViewController.h"
#include "storage/Selection.h"

namespace kestrix::shell {
namespace {

struct UnsavedMeasurement {
    const char* name;
    const char* function;
    const char* parameters;
    const char* result;
    const char* time;
};

constexpr std::array kUnsaved{
    UnsavedMeasurement{"S_1", "LOW OHM", "LIMIT=2.0Ω", "0.22Ω,207mA", "2026-01-14 16:20:11"},
    UnsavedMeasurement{"S_2", "VOLTAGE", "MODE=L-PE", "230.4V,50.0Hz", "2026-01-14 16:21:54"},
    UnsavedMeasurement{"S_1", "EARTH", "", "18.5Ω,2.5mA", "2026-01-15 09:58:41"},
    UnsavedMeasurement{"S_2", "INSULATION", "VISO=500V,LIMIT=1.0MΩ", "199.9MΩ,528V", "2026-01-15 09:59:20"},
    UnsavedMeasurement{"S_3", "LOOP", "MODE=L-PE,CURRENT=no-trip",
                       "0.62Ω,371A,L-PE=230V,N-PE=0V,L-N=230V,UL:50V", "2026-01-15 10:00:05"},
};
constexpr std::size_t kOfEarlierSession = 2;  // of them

// What a user may have typed.
constexpr const char* kProject = "Harbour Street 12";
constexpr const char* kCompany = "O'Neill & Sons";
constexpr const char* kOperator = "שירה";

// Their identities are those of no rows: what is shown is in no database.
constexpr std::int64_t kFirstIdentity = 2'000'000'001;

storage::SaveDataViewController& formOf(ui::Screen& presented) {
    return dynamic_cast<storage::SaveDataViewController&>(presented);
}

void show(storage::SaveDataViewController& form, std::size_t from) {
    std::vector<storage::MeasureData> measurements;
    for (std::size_t each = from; each < kUnsaved.size(); ++each) {
        const UnsavedMeasurement& measured = kUnsaved[each];
        storage::MeasureData& measure = measurements.emplace_back();
        measure.dataId = kFirstIdentity + static_cast<std::int64_t>(each);
        measure.dataName = measured.name;
        measure.function = measured.function;
        measure.parameters = measured.parameters;
        measure.result = measured.result;
        measure.dateTime = measured.time;
        measure.comments = " ";
    }
    storage::lastDataIdOfEarlierSessions = kFirstIdentity + static_cast<std::int64_t>(kOfEarlierSession) - 1;
    form.setMeasurements(std::move(measurements));
}

}  // namespace

void showPlaceholders(ui::Screen& presented) {
    show(formOf(presented), kOfEarlierSession);
}

void showTypedForm(ui::Screen& presented) {
    storage::SaveDataViewController& form = formOf(presented);
    show(form, 0);
    form.projectName.setText(QString::fromUtf8(kProject));
    form.company.setText(QString::fromUtf8(kCompany));
    form.operators.setText(QString::fromUtf8(kOperator));
    form.chooseRow(0);
}

void showFailedSave(ui::Screen& presented) {
    show(formOf(presented), 0);
    formOf(presented).pressSaveBack();  // as if another process had filed them meanwhile
}

}  // namespace kestrix::shell
