#pragma once

#include "../foundation/QvExport.h"

#include <string>

#include "../binding/SmartPtr.h"
#include "../foundation/QvExport.h"
#include "../foundation/QvTypes.h"
#include "../validation/WhitespaceUtils.h"

namespace QvXmlLib10 {

class CXmlObjectBase;
class CXmlCollectionBase;
class CBinaryData;
class CBigInteger;
class CDecimal;
class CDateTime;
class CDateTimeSpan;

// The tagged value through which properties travel: one value of one ItemType, or a
// nil marker (which still tells the kind that is missing), or nothing.
//
// Scalars live in the value word itself; a string and each rich value (binary data,
// duration, the five date kinds, decimal, integer) is one owned heap copy; an object is
// shared and counted through AddRef and Release. Copies are deep for owned values and
// shared for objects. The getters check nothing: reading another kind than the one
// stored gives the bits of the value word, so callers look at IsNil and the kind first.
class QVXML_API QvVariant {
public:
    QvVariant();
    QvVariant(const QvVariant& other);
    // Clears this variant first and has no test for self-assignment: `v = v` leaves
    // `v` empty.
    QvVariant& operator=(const QvVariant& other);
    virtual ~QvVariant();

    // True if a kind is set or the nil flag is.
    bool IsValid() const;
    bool IsNil() const;
    // Frees the value and sets kind 0. On a variant of kind 0 it does nothing at all,
    // so a nil flag set there stays.
    void Clear();
    // Frees the value, keeps the kind and sets the nil flag.
    void SetNil();
    void SetInvalid();

    // The name of the kind, such as "i4" or "string"; throws CQvException for kind 0
    // and for the object kinds.
    std::string GetType() const;
    // The value as text. Only r4 and r8 use `format` (a printf format, null or empty for
    // the default) and decimal (a count of fraction digits). The nil flag is not looked at.
    std::string ToString(const char* format = nullptr) const;
    // Parses `text` as `type` and stores it, so the variant takes that kind. On failure
    // the variant keeps its value.
    void FromString(const std::string& text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);

    void SetI1(char value);
    void SetI2(short value);
    void SetI4(long value);
    void SetI8(long long value);
    void SetUI1(unsigned char value);
    void SetUI2(unsigned short value);
    void SetUI4(unsigned long value);
    void SetUI8(unsigned long long value);
    // Writes 32 bits of the value word only.
    void SetR4(float value);
    void SetR8(double value);
    void SetYear(unsigned short value);
    void SetMonth(unsigned char value);
    void SetDay(unsigned char value);
    void SetChar(char value);
    void SetBoolean(bool value);
    void SetString(std::string value);
    // The rich kinds store a copy of the value as it comes; the date kinds do not compare
    // the kind with the value's own date type.
    void SetHexBinary(const CBinaryData& value);
    void SetBase64Binary(const CBinaryData& value);
    void SetDuration(const CDateTimeSpan& value);
    void SetYearMonth(const CDateTime& value);
    void SetMonthDay(const CDateTime& value);
    void SetDate(const CDateTime& value);
    void SetDateTime(const CDateTime& value);
    void SetTime(const CDateTime& value);
    void SetDecimal(const CDecimal& value);
    void SetInteger(const CBigInteger& value);
    // Takes a reference on the object (none for null) and gives it back in Clear.
    void SetXmlObject(CXmlObjectBase* value);
    // The same for a collection.
    void SetXmlCollection(CXmlCollectionBase* value);

    char GetI1() const;
    short GetI2() const;
    long GetI4() const;
    long long GetI8() const;
    unsigned char GetUI1() const;
    unsigned short GetUI2() const;
    unsigned long GetUI4() const;
    unsigned long long GetUI8() const;
    float GetR4() const;
    double GetR8() const;
    unsigned short GetYear() const;
    unsigned char GetMonth() const;
    unsigned char GetDay() const;
    char GetChar() const;
    bool GetBoolean() const;
    // A copy; empty when no string is held.
    std::string GetString() const;
    // Copies of the rich value held; a default value when none is held.
    CBinaryData GetHexBinary() const;
    CBinaryData GetBase64Binary() const;
    CDateTimeSpan GetDuration() const;
    CDateTime GetYearMonth() const;
    CDateTime GetMonthDay() const;
    CDateTime GetDate() const;
    CDateTime GetDateTime() const;
    CDateTime GetTime() const;
    CDecimal GetDecimal() const;
    CBigInteger GetInteger() const;
    // A pointer with a reference of its own.
    CSmartPtr<CXmlObjectBase> GetXmlObject() const;
    CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;

    // The kind held (also when nil), as the writers take it.
    ItemType GetItemType() const { return m_eType; }

private:
    // The facet checks read a held rich value in place instead of through a copy.
    friend class CXmlObjectHelper;
    // The owned heap value of `type`, or null unless this variant holds one of that kind.
    const void* HeldValue(ItemType type) const {
        return type == m_eType && !m_bNil && (type == ItemType_string || IsRichKind(type)) ? m_value.pHeap : nullptr;
    }
    static bool IsRichKind(ItemType type);

    // Clear, then the kind and the heap value, which the variant owns from here on.
    void TakeHeapValue(ItemType kind, void* value) noexcept;
    template <typename T> void SetHeap(ItemType kind, const T& value);
    template <typename T> T GetHeap() const;

    // Scalars sit at the low end of the 64-bit word. A string or rich value is an owned
    // heap object of the type its kind names; objects and collections are counted.
    union Value {
        char i1;
        short i2;
        long i4;
        long long i8;
        unsigned char ui1;
        unsigned short ui2;
        unsigned long ui4;
        unsigned long long ui8;
        float r4;
        double r8;
        unsigned short year;
        unsigned char month;
        unsigned char day;
        char ch;
        unsigned char boolean;
        void* pHeap;                        // owned; the type follows from the kind
        CXmlObjectBase* pXmlObject;         // one counted reference
        CXmlCollectionBase* pXmlCollection; // one counted reference
    };
    static_assert(sizeof(Value) == 8, "the value word is 64 bits wide");

    bool m_bNil;
    ItemType m_eType;
    Value m_value;
};

} // namespace QvXmlLib10
