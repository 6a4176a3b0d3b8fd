// Facet checks per call. A string with a pattern compiles its pattern on every call;
// the length-only and numeric checks show what the rest of a check costs.

#include <benchmark/benchmark.h>

#include <string>

#include <QvXml10/validation/PrimitiveRestrictions.h>
#include <QvXml10/validation/XmlObjectHelper.h>
#include <QvXml10/values/QvVariant.h>

using namespace QvXmlLib10;

namespace {

void BM_CheckRestrictionStringPattern(benchmark::State& state) {
    const CPrimitiveRestrictions restrictions("[A-Z]{2}-\\d{5}(\\.\\i\\c*)?", 1, 64, "", "", "", "", -1);
    QvVariant value;
    value.SetString("AB-12345.part_7");
    for (auto _ : state)
        CXmlObjectHelper::CheckRestriction("partNumber", value, ItemType_string, restrictions);
}
BENCHMARK(BM_CheckRestrictionStringPattern);

void BM_CheckRestrictionStringLengthOnly(benchmark::State& state) {
    const CPrimitiveRestrictions restrictions("", 1, 64, "", "", "", "", -1);
    QvVariant value;
    value.SetString("AB-12345.part_7");
    for (auto _ : state)
        CXmlObjectHelper::CheckRestriction("partNumber", value, ItemType_string, restrictions);
}
BENCHMARK(BM_CheckRestrictionStringLengthOnly);

void BM_CheckRestrictionI4Bounds(benchmark::State& state) {
    const CPrimitiveRestrictions restrictions("", -1, -1, "1", "1000", "", "", -1);
    QvVariant value;
    value.SetI4(250);
    for (auto _ : state)
        CXmlObjectHelper::CheckRestriction("quantity", value, ItemType_i4, restrictions);
}
BENCHMARK(BM_CheckRestrictionI4Bounds);

} // namespace
