#pragma once

#include <array>
#include <string_view>

// The statements, with %@ for a text and %d for an integer. Their spelling is part of the database's
// interface: quoted names and numbers, and a missing blank behind a star, are meant.
namespace kestrix::storage {

inline constexpr const char* kCreateMeasure =
    "CREATE TABLE IF NOT EXISTS measurefrom (dataId INTEGER PRIMARY KEY AUTOINCREMENT,recordId INTEGER, "
    "dataName varchar(30), function varchar(30), parameters varchar(30), result varchar(30), dateTime "
    "varchar(30), comments varchar(30), recordName varchar(30))";
inline constexpr const char* kCreateRecord =
    "CREATE TABLE IF NOT EXISTS recordfrom (dataId INTEGER PRIMARY KEY AUTOINCREMENT,company varchar(30), "
    "operators varchar(30), addres varchar(30), startTime varchar(30), endTime varchar(20), dates "
    "varchar(20), samples INTEGER, serial varchar(20), projectname varchar(30))";
// A record's measurements, and the unsaved ones, are found without reading the others.
inline constexpr std::array kCreateIndexes{
    "CREATE INDEX IF NOT EXISTS measurefrom_recordId ON measurefrom (recordId)",
    "CREATE INDEX IF NOT EXISTS measurefrom_unsaved ON measurefrom (recordName) WHERE recordName = ''"};

inline constexpr std::string_view kAddMeasure =
    "INSERT INTO '%@' ('%@', '%@', '%@', '%@', '%@', '%@', '%@', '%@') VALUES ('%d', '%@', '%@', '%@', '%@', "
    "'%@', '%@', '%@')";
inline constexpr std::string_view kAddRecord =
    "INSERT INTO '%@' ('%@', '%@', '%@', '%@', '%@', '%@', '%@', '%@', '%@') VALUES ('%@', '%@', '%@', '%@', "
    "'%@', '%@', '%d', '%@', '%@')";
inline constexpr std::string_view kUpdateMeasure =
    "update measurefrom set recordName='%@',recordId='%d' WHERE dataId = '%d'";

inline constexpr std::string_view kAllRecords = "SELECT * FROM recordfrom";
inline constexpr std::string_view kAllMeasures = "SELECT * FROM measurefrom";
inline constexpr std::string_view kMeasuresByName = "SELECT * FROM measurefrom WHERE recordName = '%@'";
inline constexpr std::string_view kMeasuresOfRecord = "SELECT *FROM measurefrom WHERE recordId = '%d'";
inline constexpr std::string_view kMeasureOfId = "SELECT *FROM measurefrom WHERE dataId = '%d'";
inline constexpr std::string_view kRecordOfId = "SELECT *FROM recordfrom WHERE dataId = '%d'";

inline constexpr std::string_view kDeleteMeasure = "DELETE FROM measurefrom WHERE dataId = '%d'";
inline constexpr std::string_view kDeleteRecord = "DELETE FROM recordfrom WHERE dataId = '%d'";

// Ours beside them: for a record that grows while it is there already, and for rows that were deleted.
inline constexpr std::string_view kUpdateRecord =
    "UPDATE recordfrom SET startTime='%@',endTime='%@',dates='%@',samples='%d' WHERE dataId = '%d'";
inline constexpr std::string_view kRestoreMeasure =
    "INSERT INTO measurefrom VALUES ('%d', '%d', '%@', '%@', '%@', '%@', '%@', '%@', '%@')";
inline constexpr std::string_view kRestoreRecord =
    "INSERT INTO recordfrom VALUES ('%d', '%@', '%@', '%@', '%@', '%@', '%@', '%d', '%@', '%@')";

// A statement ends when its rollback journal counts no more, for good. Deleted, as by default, it could come
// back after a power cut and undo the statement; here its head is overwritten and synchronised before the
// statement returns. What it took of the disk stays for the next one, which then need not wait until the file
// has grown again; of a large one no more than this is kept, in bytes.
inline constexpr const char* kDurable = "PRAGMA journal_mode = PERSIST; PRAGMA journal_size_limit = 65536";
// Before what deletes: the journal is emptied with it, so that of what was deleted nothing stays there
// either.
inline constexpr const char* kForgetful = "PRAGMA journal_size_limit = 0";

}  // namespace kestrix::storage
