#include "shell/HistoryStops.h"

#include <array>
#include <limits>

#include "history/HistoryCellViewController.h"
#include "history/HistoryViewController.h"
#include "storage/Selection.h"

namespace kestrix::shell {
namespace {

struct TourMeasurement {
    const char* function;
    const char* parameters;
    const char* result;
    const char* time;
};

constexpr const char* kTourProject = "Harbour Street 12";
constexpr std::array kTourMeasurements{
    TourMeasurement{"EARTH", "", "18.5Ω,2.5mA", "2026-01-15 10:00:05"},
    TourMeasurement{"INSULATION", "VISO=500V,LIMIT=1.0MΩ", "199.9MΩ,528V", "2026-01-15 10:01:40"},
    TourMeasurement{"LOW OHM", "LIMIT=2.0Ω", "0.22Ω,207mA", "2026-01-15 10:03:12"},
    TourMeasurement{"VOLTAGE", "MODE=L-PE", "230.4V,50.0Hz,L-PE=230V,N-PE=1V,L-N=229V",
                    "2026-01-15 10:04:51"},
    TourMeasurement{"LOOP", "MODE=L-PE,CURRENT=no-trip", "0.62Ω,371A,L-PE=230V,N-PE=0V,L-N=230V,UL:50V",
                    "2026-01-15 10:06:30"},
    TourMeasurement{"RCD", "IΔn=30mA,Type Of RCD=AC-G",
                    "x1/2 0° :>1999ms,x1/2 180°:>1999ms,x1  0° :24.3ms,x1  180°:22.1ms,x5  0° :9.6ms,"
                    "x5  180°:8.8ms,,L-PE=230V,N-PE=0V,L-N=230V,UF:0.3V,UL:50V",
                    "2026-01-15 10:09:02"},
};

// The identity of the record, which is made with its measurements when it is asked for the first time.
std::int64_t fileTourRecord(storage::ServiceDao& dao) {
    for (const storage::RecordData& known : dao.findRecordForm()) {
        if (known.projectName == kTourProject) return known.recordId;
    }
    dao.addRecordForm({.projectName = kTourProject,
                       .company = "---",
                       .operators = "---",
                       .addres = "---",
                       .startTime = kTourMeasurements.front().time,
                       .endTime = "2026-01-15 ",
                       .dates = "10:00:05",
                       .samples = static_cast<std::int64_t>(kTourMeasurements.size()),
                       .serial = "---"});
    const std::int64_t record = dao.lastOutcome().identity;
    int number = 0;
    for (const TourMeasurement& measured : kTourMeasurements) {
        dao.addMeasureForm({.recordId = record,
                            .dataName = "S_" + std::to_string(++number),
                            .function = measured.function,
                            .parameters = measured.parameters,
                            .result = measured.result,
                            .dateTime = measured.time,
                            .comments = " ",
                            .recordName = kTourProject});
    }
    return record;
}

}  // namespace

void showRecord(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::HistoryViewController&>(presented);
    storage::selectedRecordId = fileTourRecord(*screen.dao);
    screen.getMeasureData();
}

void showEmptyRecord(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::HistoryViewController&>(presented);
    storage::selectedRecordId = std::numeric_limits<std::int32_t>::max();
    screen.getMeasureData();
    screen.setTitle(screen.name());  // it may have come with another record
}

void showExportMenu(ui::Screen& presented) {
    showRecord(presented);
    dynamic_cast<history::HistoryViewController&>(presented).pressShare();
}

void showMeasurement(ui::Screen& presented) {
    auto& screen = dynamic_cast<history::HistoryCellViewController&>(presented);
    storage::selectedDataId = screen.dao->findMeasureofId(fileTourRecord(*screen.dao)).back().dataId;
    screen.getMeasureData();
}

}  // namespace kestrix::shell
