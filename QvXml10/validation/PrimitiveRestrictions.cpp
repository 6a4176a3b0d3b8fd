#include "validation/PrimitiveRestrictions.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

CPrimitiveRestrictions::CPrimitiveRestrictions() : m_nMinLength(-1), m_nMaxLength(-1), m_nLength(-1) {}

CPrimitiveRestrictions::CPrimitiveRestrictions(const char* pattern, int32_t minLength, int32_t maxLength,
                                               const char* minInclusive, const char* maxInclusive,
                                               const char* minExclusive, const char* maxExclusive, int32_t length)
    : m_strPattern(OrEmpty(pattern)), m_nMinLength(minLength), m_nMaxLength(maxLength),
      m_strMinInclusive(OrEmpty(minInclusive)), m_strMaxInclusive(OrEmpty(maxInclusive)),
      m_strMinExclusive(OrEmpty(minExclusive)), m_strMaxExclusive(OrEmpty(maxExclusive)), m_nLength(length) {}

CPrimitiveRestrictions::~CPrimitiveRestrictions() = default;

} // namespace QvXmlLib10
