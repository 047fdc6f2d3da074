#pragma once

#include <cstdint>
#include <vector>

#include "storage/RecordData.h"
#include "ui/ListModel.h"

namespace kestrix::storage {

// The saved test records, oldest first. The roles of its texts are the keys of a row.
class RecordList : public kestrix::ui::ListModel {
    Q_OBJECT

  public:
    static constexpr double kRowHeight = 50;

    RecordList();

    // All of them at once, by ascending identity, in place of those of before.
    void setRecords(const std::vector<RecordData>& records);
    // At its place by its identity. Nothing when it is there already.
    void insertRecord(const RecordData& record);
    void removeRecord(int row);

    // Whether that row was made of this record, which may have grown since.
    bool shows(int row, const RecordData& record) const;
    // Of the record in that row.
    std::int64_t recordId(int row) const { return ids_.at(static_cast<std::size_t>(row)); }

  private:
    std::vector<std::int64_t> ids_;  // of each row
};

}  // namespace kestrix::storage
