#include "tests/protocol/RecordDifference.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace kestrix::protocol {
namespace {

std::string described(const std::string& text) {
    return '"' + text + '"';
}

std::string described(unsigned number) {
    return std::to_string(number);
}

std::string described(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", number);
    return text;
}

bool same(const std::string& a, const std::string& b) {
    return a == b;
}

bool same(unsigned a, unsigned b) {
    return a == b;
}

bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

class Comparison {
  public:
    const std::string& difference() const { return difference_; }

    void text(const char* name, const std::string& expected, const std::string& actual) {
        field(name, expected, actual);
    }

    void number(const char* name, double expected, double actual) { field(name, expected, actual); }

    void byte(const char* name, unsigned expected, unsigned actual) { field(name, expected, actual); }

    void value(const char* name, const ValData& expected, const ValData& actual) {
        owner_ = name;
        number("ValD1", expected.ValD1, actual.ValD1);
        text("strValD1", expected.strValD1, actual.strValD1);
        byte("pointPosD1", expected.pointPosD1, actual.pointPosD1);
        text("strUnitD1", expected.strUnitD1, actual.strUnitD1);
        byte("NoData", expected.NoData, actual.NoData);
        byte("OlData", expected.OlData, actual.OlData);
        byte("bLess", expected.bLess, actual.bLess);
        owner_ = {};
    }

  private:
    template <class Value>
    void field(const char* name, const Value& expected, const Value& actual) {
        if (!difference_.empty() || same(expected, actual)) {
            return;
        }
        if (!owner_.empty()) {
            difference_.append(owner_).append(".");
        }
        difference_.append(name).append(": expected ").append(described(expected));
        difference_.append(", got ").append(described(actual));
    }

    std::string_view owner_;
    std::string difference_;
};

void compareFlags(Comparison& c, const MeterReading& e, const MeterReading& a) {
    c.byte("bRecord", e.bRecord, a.bRecord);
    c.byte("bWarnFlag", e.bWarnFlag, a.bWarnFlag);
    c.byte("bCalFlag", e.bCalFlag, a.bCalFlag);
    c.byte("bBeepFlag", e.bBeepFlag, a.bBeepFlag);
    c.byte("bHoldFlag", e.bHoldFlag, a.bHoldFlag);
    c.byte("bLockFlag", e.bLockFlag, a.bLockFlag);
    c.byte("bAlarmFlag", e.bAlarmFlag, a.bAlarmFlag);
    c.byte("bHighFlag", e.bHighFlag, a.bHighFlag);
    c.byte("bTestFlag", e.bTestFlag, a.bTestFlag);
    c.byte("bTestRet", e.bTestRet, a.bTestRet);
    c.byte("bTest", e.bTest, a.bTest);
    c.byte("iFunction", e.iFunction, a.iFunction);
    c.byte("iSubFunc", e.iSubFunc, a.iSubFunc);
    c.byte("iSubFuncF2", e.iSubFuncF2, a.iSubFuncF2);
    c.byte("iSubFuncF3", e.iSubFuncF3, a.iSubFuncF3);
    c.byte("iSubFuncF4", e.iSubFuncF4, a.iSubFuncF4);
}

void compareNumbers(Comparison& c, const MeterReading& e, const MeterReading& a) {
    c.value("ValData1", e.ValData1, a.ValData1);
    c.value("ValData2", e.ValData2, a.ValData2);
    c.value("ValData3", e.ValData3, a.ValData3);
    c.value("ValData4", e.ValData4, a.ValData4);
    c.value("x120", e.x120, a.x120);
    c.value("x12180", e.x12180, a.x12180);
    c.value("x10", e.x10, a.x10);
    c.value("x1180", e.x1180, a.x1180);
    c.value("x50", e.x50, a.x50);
    c.value("x5180", e.x5180, a.x5180);
    c.number("dLpe", e.dLpe, a.dLpe);
    c.number("dNpe", e.dNpe, a.dNpe);
    c.number("dLn", e.dLn, a.dLn);
    c.number("dUf", e.dUf, a.dUf);
    c.number("dUl", e.dUl, a.dUl);
}

void compareTexts(Comparison& c, const MeterReading& e, const MeterReading& a) {
    c.text("strfunction", e.strfunction, a.strfunction);
    c.text("strValue1", e.strValue1, a.strValue1);
    c.text("strValue2", e.strValue2, a.strValue2);
    c.text("strUnit1", e.strUnit1, a.strUnit1);
    c.text("strUnit2", e.strUnit2, a.strUnit2);
    c.text("strF1Name", e.strF1Name, a.strF1Name);
    c.text("strF1Value", e.strF1Value, a.strF1Value);
    c.text("strF2Name", e.strF2Name, a.strF2Name);
    c.text("strF2Value", e.strF2Value, a.strF2Value);
    c.text("strF3Name", e.strF3Name, a.strF3Name);
    c.text("strF3Value", e.strF3Value, a.strF3Value);
    c.text("strF4Name", e.strF4Name, a.strF4Name);
    c.text("strF4Value", e.strF4Value, a.strF4Value);
    c.text("strRCD1", e.strRCD1, a.strRCD1);
    c.text("strRCD2", e.strRCD2, a.strRCD2);
    c.text("strRCD3", e.strRCD3, a.strRCD3);
    c.text("strRCD4", e.strRCD4, a.strRCD4);
    c.text("strRCD5", e.strRCD5, a.strRCD5);
    c.text("strRCD6", e.strRCD6, a.strRCD6);
    c.text("strNpe", e.strNpe, a.strNpe);
    c.text("strLpe", e.strLpe, a.strLpe);
    c.text("strLn", e.strLn, a.strLn);
    c.text("strUL", e.strUL, a.strUL);
    c.text("strUF", e.strUF, a.strUF);
    c.byte("bottompicIndex", e.bottompicIndex, a.bottompicIndex);
}

}  // namespace

std::string firstDifference(const MeterReading& expected, const MeterReading& actual) {
    Comparison comparison;
    compareFlags(comparison, expected, actual);
    compareNumbers(comparison, expected, actual);
    compareTexts(comparison, expected, actual);
    return comparison.difference();
}

}  // namespace kestrix::protocol
