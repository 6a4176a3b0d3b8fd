#pragma once

// Purchase orders (urn:example:purchase-orders): what the classes of this schema share.
// The namespaces, the enumeration OrderStatus, the tables of each class and the call
// that gives all tables back at the end of the program.

#include <atomic>
#include <initializer_list>
#include <optional>
#include <string>

#include <QvXml10/binding/XmlGeneratedClass.h>
#include <QvXml10/binding/metadata/AttributeInfo.h>
#include <QvXml10/binding/metadata/ElementInfo.h>
#include <QvXml10/binding/metadata/ParentElementInfo.h>
#include <QvXml10/values/QvVariant.h>

namespace PurchaseOrders {

// The schema's target namespace.
extern const char* const TARGET_NAMESPACE; // "urn:example:purchase-orders"

// xs:simpleType OrderStatus.
enum OrderStatus : int {
    OrderStatus_open = 0,
    OrderStatus_confirmed = 1,
    OrderStatus_shipped = 2,
    OrderStatus_cancelled = 3
};

// The text of a value; throws CQvInvalidValueException for a number that is no value.
const char* OrderStatusToText(int value);
// The value of a text, compared exactly; throws CQvInvalidValueException for any other text.
int TextToOrderStatus(const char* text);

// The three metadata tables of one class. They are built on first use, under
// CXmlGeneratedClass::m_csInit, and read without a lock from then on; Clean gives them
// back, after which the next use builds them again.
class CClassTables {
public:
    typedef void (*BuildFunction)(QvXmlLib10Data::CParentElementInfo*& parent, QvXmlLib10Data::CElementInfo**& elements,
                                  QvXmlLib10Data::CAttributeInfo**& attributes);

    constexpr CClassTables() = default;
    CClassTables(const CClassTables&) = delete;
    CClassTables& operator=(const CClassTables&) = delete;

    // The tables, built by `build` unless they stand already.
    const CClassTables& Ensure(BuildFunction build) {
        if (!m_built.load(std::memory_order_acquire)) Build(build);
        return *this;
    }
    void Clean();

    QvXmlLib10Data::CParentElementInfo* m_pParent = nullptr;
    QvXmlLib10Data::CElementInfo** m_pElements = nullptr;
    QvXmlLib10Data::CAttributeInfo** m_pAttributes = nullptr;

private:
    void Build(BuildFunction build);

    std::atomic<bool> m_built{false};
};

// A null-terminated table of the entries, in the given order.
template <typename Entry> Entry** MakeTable(std::initializer_list<Entry*> entries) {
    Entry** table = new Entry*[entries.size() + 1];
    Entry** next = table;
    for (Entry* entry : entries)
        *next++ = entry;
    *next = nullptr;
    return table;
}

// Property access through a variant, in the forms the metadata reads and writes:
// xs:string as a string, xs:int as an i4, xs:long as an i8, xs:boolean as a boolean.
inline void AccessValue(bool read, QvXmlLib10::QvVariant& value, std::string& member) {
    if (read)
        value.SetString(member);
    else
        member = value.GetString();
}
inline void AccessValue(bool read, QvXmlLib10::QvVariant& value, long& member) {
    if (read)
        value.SetI4(member);
    else
        member = value.GetI4();
}
inline void AccessValue(bool read, QvXmlLib10::QvVariant& value, long long& member) {
    if (read)
        value.SetI8(member);
    else
        member = value.GetI8();
}
inline void AccessValue(bool read, QvXmlLib10::QvVariant& value, bool& member) {
    if (read)
        value.SetBoolean(member);
    else
        member = value.GetBoolean();
}
// An optional value: read without a value it leaves the variant empty; a variant
// without a value removes it.
template <typename T> void AccessValue(bool read, QvXmlLib10::QvVariant& value, std::optional<T>& member) {
    if (read) {
        if (member) AccessValue(true, value, *member);
    } else if (!value.IsValid() || value.IsNil()) {
        member.reset();
    } else {
        if (!member) member.emplace();
        AccessValue(false, value, *member);
    }
}

// An optional value of a rich kind, stored through the variant's setter and getter of
// that kind (for example SetDate and GetDate for an xs:date).
template <typename T, typename Set, typename Get>
void AccessOptional(bool read, QvXmlLib10::QvVariant& value, std::optional<T>& member, Set set, Get get) {
    if (read) {
        if (member) (value.*set)(*member);
    } else if (!value.IsValid() || value.IsNil()) {
        member.reset();
    } else {
        member = (value.*get)();
    }
}

// Throws CQvInvalidStateException: the optional property has no value.
[[noreturn]] void ThrowNoValue(const char* className, const char* propertyName);

// Throws CQvInvalidParamException: the class has no property of that number.
[[noreturn]] void ThrowNoProperty(const char* className, int propertyIndex);

// Gives back the tables of every class of this schema. Call it once no object of the
// schema is in use any more, normally at the end of the program.
void CleanOrdersMetaData();

} // namespace PurchaseOrders
