#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "protocol/MeterReading.h"

namespace kestrix::cli {

// A text that can be a template argument, so that what is made from it is made by the compiler.
template <std::size_t Size>
struct Name {
    char text[Size] = {};

    constexpr Name(const char (&literal)[Size]) {
        std::copy_n(literal, Size, text);
    }  // NOLINT(google-explicit-constructor)
    constexpr std::string_view view() const { return {text, Size - 1}; }
};

template <Name FieldName, auto Member>
struct Field {
    static constexpr auto name = FieldName;
    static constexpr auto member = Member;
};

// Fields of one struct in declaration order.
template <class... Fields>
struct FieldList {
    static constexpr std::size_t size = sizeof...(Fields);

    // Calls visit(Field<...>{}) for each field, in order.
    template <class Visit>
    static constexpr void forEach(Visit&& visit) {
        (visit(Fields{}), ...);
    }
};

#define KESTRIX_FIELD(owner, name) Field<#name, &protocol::owner::name>

using ValDataFields =
    FieldList<KESTRIX_FIELD(ValData, ValD1), KESTRIX_FIELD(ValData, strValD1),
              KESTRIX_FIELD(ValData, pointPosD1), KESTRIX_FIELD(ValData, strUnitD1),
              KESTRIX_FIELD(ValData, NoData), KESTRIX_FIELD(ValData, OlData), KESTRIX_FIELD(ValData, bLess)>;

using ReadingFields =
    FieldList<KESTRIX_FIELD(MeterReading, bRecord), KESTRIX_FIELD(MeterReading, bWarnFlag),
              KESTRIX_FIELD(MeterReading, bCalFlag), KESTRIX_FIELD(MeterReading, bBeepFlag),
              KESTRIX_FIELD(MeterReading, bHoldFlag), KESTRIX_FIELD(MeterReading, bLockFlag),
              KESTRIX_FIELD(MeterReading, bAlarmFlag), KESTRIX_FIELD(MeterReading, bHighFlag),
              KESTRIX_FIELD(MeterReading, bTestFlag), KESTRIX_FIELD(MeterReading, bTestRet),
              KESTRIX_FIELD(MeterReading, bTest), KESTRIX_FIELD(MeterReading, iFunction),
              KESTRIX_FIELD(MeterReading, iSubFunc), KESTRIX_FIELD(MeterReading, iSubFuncF2),
              KESTRIX_FIELD(MeterReading, iSubFuncF3), KESTRIX_FIELD(MeterReading, iSubFuncF4),
              KESTRIX_FIELD(MeterReading, ValData1), KESTRIX_FIELD(MeterReading, ValData2),
              KESTRIX_FIELD(MeterReading, ValData3), KESTRIX_FIELD(MeterReading, ValData4),
              KESTRIX_FIELD(MeterReading, x120), KESTRIX_FIELD(MeterReading, x12180),
              KESTRIX_FIELD(MeterReading, x10), KESTRIX_FIELD(MeterReading, x1180),
              KESTRIX_FIELD(MeterReading, x50), KESTRIX_FIELD(MeterReading, x5180),
              KESTRIX_FIELD(MeterReading, dLpe), KESTRIX_FIELD(MeterReading, dNpe),
              KESTRIX_FIELD(MeterReading, dLn), KESTRIX_FIELD(MeterReading, dUf),
              KESTRIX_FIELD(MeterReading, dUl), KESTRIX_FIELD(MeterReading, strfunction),
              KESTRIX_FIELD(MeterReading, strValue1), KESTRIX_FIELD(MeterReading, strValue2),
              KESTRIX_FIELD(MeterReading, strUnit1), KESTRIX_FIELD(MeterReading, strUnit2),
              KESTRIX_FIELD(MeterReading, strF1Name), KESTRIX_FIELD(MeterReading, strF1Value),
              KESTRIX_FIELD(MeterReading, strF2Name), KESTRIX_FIELD(MeterReading, strF2Value),
              KESTRIX_FIELD(MeterReading, strF3Name), KESTRIX_FIELD(MeterReading, strF3Value),
              KESTRIX_FIELD(MeterReading, strF4Name), KESTRIX_FIELD(MeterReading, strF4Value),
              KESTRIX_FIELD(MeterReading, strRCD1), KESTRIX_FIELD(MeterReading, strRCD2),
              KESTRIX_FIELD(MeterReading, strRCD3), KESTRIX_FIELD(MeterReading, strRCD4),
              KESTRIX_FIELD(MeterReading, strRCD5), KESTRIX_FIELD(MeterReading, strRCD6),
              KESTRIX_FIELD(MeterReading, strNpe), KESTRIX_FIELD(MeterReading, strLpe),
              KESTRIX_FIELD(MeterReading, strLn), KESTRIX_FIELD(MeterReading, strUL),
              KESTRIX_FIELD(MeterReading, strUF), KESTRIX_FIELD(MeterReading, bottompicIndex)>;

#undef KESTRIX_FIELD

static_assert(ValDataFields::size == 7);
static_assert(ReadingFields::size == 56);

}  // namespace kestrix::cli
