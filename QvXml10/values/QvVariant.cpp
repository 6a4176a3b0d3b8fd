#include "values/QvVariant.h"

#include <memory>
#include <type_traits>
#include <utility>

#include "binding/XmlObjectBase.h"
#include "collections/XmlCollection.h"
#include "foundation/BinaryData.h"
#include "foundation/QvException.h"
#include "internal/ItemKinds.h"
#include "values/BigInteger.h"
#include "values/Conversions.h"
#include "values/DateTime.h"
#include "values/DateTimeSpan.h"
#include "values/Decimal.h"

namespace QvXmlLib10 {

namespace {

using Internal::GetItemKind;
using Internal::IsPrimitiveKind;

// Frees a heap value of `kind` when the owner goes out of scope without handing it on.
struct CHeapValue {
    ItemType kind;
    void* value;
    ~CHeapValue() {
        if (value != nullptr) GetItemKind(kind).m_destroy(value);
    }
    void* Release() {
        void* const result = value;
        value = nullptr;
        return result;
    }
};

[[noreturn]] void ThrowNotConvertible(ItemType kind) {
    throw CQvException(FormatString("Invalid Type %d to convert to string", static_cast<int>(kind)));
}

} // namespace

QvVariant::QvVariant() : m_bNil(false), m_eType(ItemType_Invalid), m_value() { m_value.ui8 = 0; }

QvVariant::QvVariant(const QvVariant& other) : QvVariant() { *this = other; }

QvVariant& QvVariant::operator=(const QvVariant& other) {
    if (this == &other) {
        // Clearing the target clears the source too: nothing is left to copy.
        Clear();
        return *this;
    }

    // Take the new value before the old one goes, so that a source that lives inside
    // the object this variant holds is still there to be read.
    const ItemType kind = other.m_eType;
    const bool nil = other.m_bNil;
    const Value word = other.m_value;
    const bool heap = Internal::IsHeapKind(kind);
    CHeapValue copy{kind, nullptr};
    CSmartPtr<CXmlObjectBase> object;
    CSmartPtr<CXmlCollectionBase> collection;
    if (!nil) {
        if (heap && word.pHeap != nullptr)
            copy.value = GetItemKind(kind).m_clone(word.pHeap);
        else if (other.m_eType == ItemType_XmlObject)
            object = word.pXmlObject;
        else if (other.m_eType == ItemType_XmlCollection)
            collection = word.pXmlCollection;
    }

    Clear();
    m_eType = kind;
    m_bNil = nil;

    // Heap kinds take what was prepared above: nothing when the source is nil.
    if (heap) {
        m_value.pHeap = copy.Release();
        return *this;
    }
    if (kind == ItemType_XmlObject) {
        m_value.pXmlObject = object.Detach();
        return *this;
    }
    if (kind == ItemType_XmlCollection) {
        m_value.pXmlCollection = collection.Detach();
        return *this;
    }
    // Nil carries no value; a scalar copies its own width of the word and no more.
    if (nil) return *this;
    switch (kind) {
    case ItemType_Invalid:
        break;
    case ItemType_i1:
        m_value.i1 = word.i1;
        break;
    case ItemType_i2:
        m_value.i2 = word.i2;
        break;
    case ItemType_i4:
        m_value.i4 = word.i4;
        break;
    case ItemType_i8:
        m_value.i8 = word.i8;
        break;
    case ItemType_ui1:
        m_value.ui1 = word.ui1;
        break;
    case ItemType_ui2:
        m_value.ui2 = word.ui2;
        break;
    case ItemType_ui4:
        m_value.ui4 = word.ui4;
        break;
    case ItemType_ui8:
        m_value.ui8 = word.ui8;
        break;
    case ItemType_r4:
        m_value.r4 = word.r4;
        break;
    case ItemType_r8:
        m_value.r8 = word.r8;
        break;
    case ItemType_year:
        m_value.year = word.year;
        break;
    case ItemType_month:
        m_value.month = word.month;
        break;
    case ItemType_day:
        m_value.day = word.day;
        break;
    case ItemType_char:
        m_value.ch = word.ch;
        break;
    case ItemType_boolean:
        m_value.boolean = word.boolean;
        break;
    default:
        throw CQvException("Unknown Type");
    }
    return *this;
}

QvVariant::~QvVariant() { Clear(); }

bool QvVariant::IsValid() const { return m_eType != ItemType_Invalid || m_bNil; }

bool QvVariant::IsNil() const { return m_bNil; }

void QvVariant::Clear() {
    if (m_eType == ItemType_Invalid) return;
    m_bNil = false;
    const ItemType kind = m_eType;
    m_eType = ItemType_Invalid;
    if (Internal::IsHeapKind(kind)) {
        void* const value = m_value.pHeap;
        m_value.pHeap = nullptr;
        if (value != nullptr) GetItemKind(kind).m_destroy(value);
        return;
    }
    switch (kind) {
    case ItemType_XmlObject: {
        // The variant is empty before Release runs any destructor.
        CXmlObjectBase* const object = m_value.pXmlObject;
        m_value.pXmlObject = nullptr;
        if (object != nullptr) object->Release();
        break;
    }
    case ItemType_XmlCollection: {
        CXmlCollectionBase* const collection = m_value.pXmlCollection;
        m_value.pXmlCollection = nullptr;
        if (collection != nullptr) collection->Release();
        break;
    }
    default:
        // A scalar leaves the value word as it stands.
        break;
    }
}

void QvVariant::SetNil() {
    const ItemType kind = m_eType;
    Clear();
    m_eType = kind;
    m_bNil = true;
}

void QvVariant::SetInvalid() {
    Clear();
    m_eType = ItemType_Invalid;
}

std::string QvVariant::GetType() const {
    if (!IsPrimitiveKind(m_eType)) throw CQvException(FormatString("Invalid Type %d", static_cast<int>(m_eType)));
    return GetItemKind(m_eType).m_name;
}

std::string QvVariant::ToString(const char* format) const {
    switch (m_eType) {
    case ItemType_i1:
        return CConversions::i1ToString(m_value.i1);
    case ItemType_i2:
        return CConversions::i2ToString(m_value.i2);
    case ItemType_i4:
        return CConversions::i4ToString(m_value.i4);
    case ItemType_i8:
        return CConversions::i8ToString(m_value.i8);
    case ItemType_ui1:
        return CConversions::ui1ToString(m_value.ui1);
    case ItemType_ui2:
        return CConversions::ui2ToString(m_value.ui2);
    case ItemType_ui4:
        return CConversions::ui4ToString(m_value.ui4);
    case ItemType_ui8:
        return CConversions::ui8ToString(m_value.ui8);
    case ItemType_r4:
        return CConversions::r4ToString(m_value.r4, format != nullptr ? std::string(format) : std::string());
    case ItemType_r8:
        return CConversions::r8ToString(m_value.r8, format != nullptr ? std::string(format) : std::string());
    case ItemType_year:
        return CConversions::yearToString(m_value.year);
    case ItemType_month:
        return CConversions::monthToString(m_value.month);
    case ItemType_day:
        return CConversions::dayToString(m_value.day);
    case ItemType_char:
        return CConversions::charToString(m_value.ch);
    case ItemType_boolean:
        return CConversions::booleanToString(m_value.boolean != 0);
    default:
        break;
    }
    const Internal::CItemKind& kind = GetItemKind(m_eType);
    if (!IsPrimitiveKind(m_eType) || kind.m_toString == nullptr) ThrowNotConvertible(m_eType);
    // A heap kind that holds nothing (a nil value) prints as empty text.
    if (m_value.pHeap == nullptr) return std::string();
    return kind.m_toString(m_value.pHeap, format != nullptr ? std::string(format) : std::string());
}

void QvVariant::FromString(const std::string& text, ItemType type, CWhitespaceUtils::WhitespaceRule rule) {
    // Each branch parses completely before the setter touches this variant.
    switch (type) {
    case ItemType_i1:
        SetI1(CConversions::i1FromString(text, rule));
        break;
    case ItemType_i2:
        SetI2(CConversions::i2FromString(text, rule));
        break;
    case ItemType_i4:
        SetI4(CConversions::i4FromString(text, rule));
        break;
    case ItemType_i8:
        SetI8(CConversions::i8FromString(text, rule));
        break;
    case ItemType_ui1:
        SetUI1(CConversions::ui1FromString(text, rule));
        break;
    case ItemType_ui2:
        SetUI2(CConversions::ui2FromString(text, rule));
        break;
    case ItemType_ui4:
        SetUI4(CConversions::ui4FromString(text, rule));
        break;
    case ItemType_ui8:
        SetUI8(CConversions::ui8FromString(text, rule));
        break;
    case ItemType_r4:
        SetR4(CConversions::r4FromString(text, rule));
        break;
    case ItemType_r8:
        SetR8(CConversions::r8FromString(text, rule));
        break;
    case ItemType_char:
        SetChar(CConversions::charFromString(text, rule));
        break;
    case ItemType_boolean:
        SetBoolean(CConversions::booleanFromString(text, rule));
        break;
    case ItemType_year:
        SetYear(CConversions::yearFromString(text, rule));
        break;
    case ItemType_month:
        SetMonth(CConversions::monthFromString(text, rule));
        break;
    case ItemType_day:
        SetDay(CConversions::dayFromString(text, rule));
        break;
    default: {
        const Internal::CItemKind& kind = GetItemKind(type);
        // The message names the present kind, not the one asked for.
        if (!IsPrimitiveKind(type) || kind.m_fromString == nullptr) ThrowNotConvertible(m_eType);
        TakeHeapValue(type, kind.m_fromString(text, rule));
    }
    }
}

void QvVariant::SetI1(char value) {
    Clear();
    m_eType = ItemType_i1;
    m_value.i1 = value;
}

void QvVariant::SetI2(short value) {
    Clear();
    m_eType = ItemType_i2;
    m_value.i2 = value;
}

void QvVariant::SetI4(long value) {
    Clear();
    m_eType = ItemType_i4;
    m_value.i4 = value;
}

void QvVariant::SetI8(long long value) {
    Clear();
    m_eType = ItemType_i8;
    m_value.i8 = value;
}

void QvVariant::SetUI1(unsigned char value) {
    Clear();
    m_eType = ItemType_ui1;
    m_value.ui1 = value;
}

void QvVariant::SetUI2(unsigned short value) {
    Clear();
    m_eType = ItemType_ui2;
    m_value.ui2 = value;
}

void QvVariant::SetUI4(unsigned long value) {
    Clear();
    m_eType = ItemType_ui4;
    m_value.ui4 = value;
}

void QvVariant::SetUI8(unsigned long long value) {
    Clear();
    m_eType = ItemType_ui8;
    m_value.ui8 = value;
}

void QvVariant::SetR4(float value) {
    Clear();
    m_eType = ItemType_r4;
    m_value.r4 = value;
}

void QvVariant::SetR8(double value) {
    Clear();
    m_eType = ItemType_r8;
    m_value.r8 = value;
}

void QvVariant::SetYear(unsigned short value) {
    Clear();
    m_eType = ItemType_year;
    m_value.year = value;
}

void QvVariant::SetMonth(unsigned char value) {
    Clear();
    m_eType = ItemType_month;
    m_value.month = value;
}

void QvVariant::SetDay(unsigned char value) {
    Clear();
    m_eType = ItemType_day;
    m_value.day = value;
}

void QvVariant::SetChar(char value) {
    Clear();
    m_eType = ItemType_char;
    m_value.ch = value;
}

void QvVariant::SetBoolean(bool value) {
    Clear();
    m_eType = ItemType_boolean;
    m_value.boolean = value ? 1 : 0;
}

void QvVariant::SetString(std::string value) { TakeHeapValue(ItemType_string, new std::string(std::move(value))); }

bool QvVariant::IsRichKind(ItemType type) { return Internal::IsHeapKind(type); }

void QvVariant::TakeHeapValue(ItemType kind, void* value) noexcept {
    CHeapValue owner{kind, value};
    Clear();
    m_eType = kind;
    m_value.pHeap = owner.Release();
}

template <typename T> void QvVariant::SetHeap(ItemType kind, const T& value) { TakeHeapValue(kind, new T(value)); }

template <typename T> T QvVariant::GetHeap() const {
    // A nil variant holds no value and gives the type's zero.
    if (m_value.pHeap == nullptr) {
        if constexpr (std::is_same_v<T, CBigInteger>)
            return T(0);
        else
            return T();
    }
    return *static_cast<const T*>(m_value.pHeap);
}

void QvVariant::SetHexBinary(const CBinaryData& value) { SetHeap(ItemType_hexBinary, value); }

void QvVariant::SetBase64Binary(const CBinaryData& value) { SetHeap(ItemType_base64Binary, value); }

void QvVariant::SetDuration(const CDateTimeSpan& value) { SetHeap(ItemType_duration, value); }

void QvVariant::SetYearMonth(const CDateTime& value) { SetHeap(ItemType_yearMonth, value); }

void QvVariant::SetMonthDay(const CDateTime& value) { SetHeap(ItemType_monthDay, value); }

void QvVariant::SetDate(const CDateTime& value) { SetHeap(ItemType_date, value); }

void QvVariant::SetDateTime(const CDateTime& value) { SetHeap(ItemType_datetime, value); }

void QvVariant::SetTime(const CDateTime& value) { SetHeap(ItemType_time, value); }

void QvVariant::SetDecimal(const CDecimal& value) { SetHeap(ItemType_decimal, value); }

void QvVariant::SetInteger(const CBigInteger& value) { SetHeap(ItemType_integer, value); }

CBinaryData QvVariant::GetHexBinary() const { return GetHeap<CBinaryData>(); }

CBinaryData QvVariant::GetBase64Binary() const { return GetHeap<CBinaryData>(); }

CDateTimeSpan QvVariant::GetDuration() const { return GetHeap<CDateTimeSpan>(); }

CDateTime QvVariant::GetYearMonth() const { return GetHeap<CDateTime>(); }

CDateTime QvVariant::GetMonthDay() const { return GetHeap<CDateTime>(); }

CDateTime QvVariant::GetDate() const { return GetHeap<CDateTime>(); }

CDateTime QvVariant::GetDateTime() const { return GetHeap<CDateTime>(); }

CDateTime QvVariant::GetTime() const { return GetHeap<CDateTime>(); }

CDecimal QvVariant::GetDecimal() const { return GetHeap<CDecimal>(); }

CBigInteger QvVariant::GetInteger() const { return GetHeap<CBigInteger>(); }

void QvVariant::SetXmlObject(CXmlObjectBase* value) {
    // The new reference is taken first, so setting the object already held cannot
    // delete it on the way.
    if (value != nullptr) value->AddRef();
    Clear();
    m_eType = ItemType_XmlObject;
    m_value.pXmlObject = value;
}

void QvVariant::SetXmlCollection(CXmlCollectionBase* value) {
    if (value != nullptr) value->AddRef();
    Clear();
    m_eType = ItemType_XmlCollection;
    m_value.pXmlCollection = value;
}

char QvVariant::GetI1() const { return m_value.i1; }

short QvVariant::GetI2() const { return m_value.i2; }

long QvVariant::GetI4() const { return m_value.i4; }

long long QvVariant::GetI8() const { return m_value.i8; }

unsigned char QvVariant::GetUI1() const { return m_value.ui1; }

unsigned short QvVariant::GetUI2() const { return m_value.ui2; }

unsigned long QvVariant::GetUI4() const { return m_value.ui4; }

unsigned long long QvVariant::GetUI8() const { return m_value.ui8; }

float QvVariant::GetR4() const { return m_value.r4; }

double QvVariant::GetR8() const { return m_value.r8; }

unsigned short QvVariant::GetYear() const { return m_value.year; }

unsigned char QvVariant::GetMonth() const { return m_value.month; }

unsigned char QvVariant::GetDay() const { return m_value.day; }

char QvVariant::GetChar() const { return m_value.ch; }

bool QvVariant::GetBoolean() const { return m_value.boolean != 0; }

std::string QvVariant::GetString() const { return GetHeap<std::string>(); }

CSmartPtr<CXmlObjectBase> QvVariant::GetXmlObject() const { return CSmartPtr<CXmlObjectBase>(m_value.pXmlObject); }

CSmartPtr<CXmlCollectionBase> QvVariant::GetXmlCollection() const {
    return CSmartPtr<CXmlCollectionBase>(m_value.pXmlCollection);
}

} // namespace QvXmlLib10
