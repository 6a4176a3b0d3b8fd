#pragma once

// Enumerations shared by every subsystem. Generated code passes them by number,
// so each is a 32-bit int with fixed values.

#include <cstdint>

namespace QvXmlLib10 {

enum ItemType : int32_t {
    ItemType_Invalid = 0,
    ItemType_hexBinary = 1,
    ItemType_base64Binary = 2,
    ItemType_i1 = 3,
    ItemType_i2 = 4,
    ItemType_i4 = 5,
    ItemType_i8 = 6,
    ItemType_ui1 = 7,
    ItemType_ui2 = 8,
    ItemType_ui4 = 9,
    ItemType_ui8 = 10,
    ItemType_r4 = 11,
    ItemType_r8 = 12,
    ItemType_duration = 13,
    ItemType_yearMonth = 14,
    ItemType_monthDay = 15,
    ItemType_year = 16,
    ItemType_month = 17,
    ItemType_day = 18,
    ItemType_date = 19,
    ItemType_datetime = 20,
    ItemType_time = 21,
    ItemType_char = 22,
    ItemType_string = 23,
    ItemType_boolean = 24,
    ItemType_decimal = 25,
    ItemType_integer = 26,
    // The two kinds below occur only inside QvVariant.
    ItemType_XmlObject = 27,
    ItemType_XmlCollection = 28
};

// Encoding of a text sink.
enum XmlEncoding : int32_t {
    XmlEncoding_None = 0,
    XmlEncoding_UTF8 = 1,
    XmlEncoding_UTF16 = 2,
    XmlEncoding_UTF16NoDecl = 3
};

enum EOLType : int32_t { EOLType_CRLF = 0, EOLType_LF = 1 };

enum CompressionType : int32_t { CompressionType_None = 0, CompressionType_GZip = 1, CompressionType_ZLib = 2 };

// XML declaration in front of a Fast Infoset document: 0 for none, 1 to 9 select
// one of the nine standard declaration texts.
enum FInfoDecl : int32_t { FInfoDecl_None = 0 };

enum SchemaType : int32_t {
    SchemaType_Default = 0,
    SchemaType_Reserved = 1,    // behaves as SchemaType_Default
    SchemaType_NoNamespaces = 2 // namespace matching off, plain text parser
};

} // namespace QvXmlLib10
