#include "validation/PrimitiveRestrictions.h"

namespace QvXmlLib10 {

namespace {

const char* TextOrEmpty(const char* text) { return text != nullptr ? text : ""; }

} // namespace

CPrimitiveRestrictions::CPrimitiveRestrictions() : m_nMinLength(-1), m_nMaxLength(-1), m_nLength(-1) {}

CPrimitiveRestrictions::CPrimitiveRestrictions(const char* pattern, int32_t minLength, int32_t maxLength,
                                               const char* minInclusive, const char* maxInclusive,
                                               const char* minExclusive, const char* maxExclusive, int32_t length)
    : m_strPattern(TextOrEmpty(pattern)), m_nMinLength(minLength), m_nMaxLength(maxLength),
      m_strMinInclusive(TextOrEmpty(minInclusive)), m_strMaxInclusive(TextOrEmpty(maxInclusive)),
      m_strMinExclusive(TextOrEmpty(minExclusive)), m_strMaxExclusive(TextOrEmpty(maxExclusive)), m_nLength(length) {}

CPrimitiveRestrictions::~CPrimitiveRestrictions() = default;

} // namespace QvXmlLib10
