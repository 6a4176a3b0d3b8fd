#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <memory>
#include <string>

namespace QvXmlLib10 {
namespace Internal {
class CPatternCache;
class CBoundCache;
struct CBoundAccess;
} // namespace Internal
} // namespace QvXmlLib10

namespace QvXmlLib10 {

// The XSD facets of one primitive item, as generated metadata declares them. A text
// facet is not set when empty, a number when negative. Bounds stay in the lexical form
// of the item's kind and are parsed by each check. Lengths count bytes.
class QVXML_API CPrimitiveRestrictions {
public:
    // Nothing set.
    CPrimitiveRestrictions();
    // A null text counts as empty.
    CPrimitiveRestrictions(const char* pattern, int32_t minLength, int32_t maxLength, const char* minInclusive,
                           const char* maxInclusive, const char* minExclusive, const char* maxExclusive,
                           int32_t length);
    CPrimitiveRestrictions(const CPrimitiveRestrictions&) = default;
    CPrimitiveRestrictions(CPrimitiveRestrictions&&) = default;
    CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions&) = default;
    CPrimitiveRestrictions& operator=(CPrimitiveRestrictions&&) = default;
    virtual ~CPrimitiveRestrictions();

    std::string m_strPattern; // XSD regular expression
    int32_t m_nMinLength;
    int32_t m_nMaxLength;
    std::string m_strMinInclusive;
    std::string m_strMaxInclusive;
    std::string m_strMinExclusive;
    std::string m_strMaxExclusive;
    int32_t m_nLength;

private:
    friend class CXmlObjectHelper;
    friend struct Internal::CBoundAccess;
    // The pattern compiled by the last check, reused while m_strPattern stays the same.
    // Copies share it; it never changes what a check answers.
    mutable std::shared_ptr<const Internal::CPatternCache> m_pCompiledPattern;
    // The bounds parsed by the last check of a decimal, integer, date or duration kind,
    // reused while the kind and the four bound texts stay the same. Shared like the
    // pattern, and as invisible.
    mutable std::shared_ptr<const Internal::CBoundCache> m_pParsedBounds;
};

} // namespace QvXmlLib10
