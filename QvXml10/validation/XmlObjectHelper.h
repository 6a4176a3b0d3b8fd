#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "../foundation/QvExport.h"
#include "../foundation/QvTypes.h"
#include "PrimitiveRestrictions.h"

namespace QvXmlLib10 {

class QvVariant;
class CXmlElement;
class CBinaryData;
class CBigInteger;
class CDecimal;
class CDateTime;
class CDateTimeSpan;
class CXmlSerializationContext;

// Facet checks of primitive values. A check passes or throws; a failed facet is a
// CQvException naming the item (`name`) and the value. Checks stop at the first
// failed facet. Bounds are parsed with the whitespace rule collapse; a bound that
// does not parse fails the check with the words of its parser.
class QVXML_API CXmlObjectHelper {
public:
    // Reads `value` as `type`, whatever the variant's own kind and nil flag, and runs
    // that kind's check. A kind without a check throws CQvInvalidValueException
    // "unknown type [<kind of the variant>]".
    static void CheckRestriction(const char* name, const QvVariant& value, ItemType type,
                                 const CPrimitiveRestrictions& restrictions);

    // The ordered kinds: minInclusive, maxInclusive, minExclusive, maxExclusive, in
    // that order. A NaN fails every facet that is set.
    static void CheckRestrictionFori1(const char* name, char value, const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori2(const char* name, short value, const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori4(const char* name, long value, const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFori8(const char* name, long long value, const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui1(const char* name, unsigned char value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui2(const char* name, unsigned short value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui4(const char* name, unsigned long value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForui8(const char* name, unsigned long long value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForr4(const char* name, float value, const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForr8(const char* name, double value, const CPrimitiveRestrictions& restrictions);

    // minLength, maxLength and length in bytes, then the pattern over the whole value.
    static void CheckRestrictionForstring(const char* name, std::string value,
                                          const CPrimitiveRestrictions& restrictions);
    // Booleans have no facet to check.
    static void CheckRestrictionForboolean(const char* name, bool value, const CPrimitiveRestrictions& restrictions);

    // minLength, maxLength and length in bytes. The value is shown in hexadecimal in
    // both kinds.
    static void CheckRestrictionForhexBinary(const char* name, const CBinaryData& value,
                                             const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForbase64Binary(const char* name, const CBinaryData& value,
                                                const CPrimitiveRestrictions& restrictions);
    // Partially ordered kinds: an indeterminate comparison passes every facet.
    static void CheckRestrictionForduration(const char* name, const CDateTimeSpan& value,
                                            const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForyearMonth(const char* name, const CDateTime& value,
                                             const CPrimitiveRestrictions& restrictions);
    // The same as CheckRestrictionForyearMonth.
    static void CheckRestrictionFormonthYear(const char* name, const CDateTime& value,
                                             const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFormonthDay(const char* name, const CDateTime& value,
                                            const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFordate(const char* name, const CDateTime& value,
                                        const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFordatetime(const char* name, const CDateTime& value,
                                            const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFortime(const char* name, const CDateTime& value,
                                        const CPrimitiveRestrictions& restrictions);
    // Ordered kinds, as the integers above. Bounds of the rich kinds are parsed once per
    // set of facets and kept with it.
    static void CheckRestrictionForyear(const char* name, unsigned short value,
                                        const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFormonth(const char* name, unsigned char value,
                                         const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForday(const char* name, unsigned char value,
                                       const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionFordecimal(const char* name, const CDecimal& value,
                                           const CPrimitiveRestrictions& restrictions);
    static void CheckRestrictionForinteger(const char* name, const CBigInteger& value,
                                           const CPrimitiveRestrictions& restrictions);

    // ---- Namespace restrictions of wildcards (NamespaceRestrictions.cpp) ----------

    // Whether a namespace passes a wildcard's list ("##any", "##other", "##local",
    // "##targetNamespace" or URIs). Only the first token of a list is read as a
    // keyword; a literal token passes when the namespace equals the whole list, and
    // an empty namespace passes any literal token.
    static bool IsNamespaceValid(const std::string& namespaceUri, const std::string& restrictions,
                                 const std::string& targetNamespace);
    // As IsNamespaceValid, throwing CQvInvalidNamespaceException where it answers false.
    static void TestNamespace(const std::string& namespaceUri, const std::string& restrictions,
                              const std::string& targetNamespace);
    // Whether an element has the given local name and, unless the context ignores
    // namespaces, the given namespace. A null element never matches.
    static bool DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* element,
                                     const std::string& localName, const std::string& namespaceUri);

private:
    template <typename T, typename Check>
    static void CheckHeld(const QvVariant& value, ItemType type, T (QvVariant::*get)() const, Check check);
};

} // namespace QvXmlLib10
