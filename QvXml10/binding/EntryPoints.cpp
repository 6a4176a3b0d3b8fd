// The text and Fast Infoset output entry points of CXmlObjectBase: each builds a sink
// and a writer, has the object write itself through ToXml_Int and takes the result.

#include "binding/XmlObjectBase.h"

#include "document/XmlTextWriter.h"
#include "fastinfoset/FastInfosetWriter.h"
#include "foundation/QvException.h"
#include "foundation/QvZip.h"
#include "foundation/Streams.h"

namespace QvXmlLib10 {

bool ASYNC_TOXMLFILE = false;

void AsyncToXmlFile(bool async) { ASYNC_TOXMLFILE = async; }

namespace {

void WriteDocument(const CXmlObjectBase& object, CXmlTextWriter& writer, bool declaration, bool format, EOLType eol,
                   const CXmlSerializationContext& context) {
    writer.Open();
    writer.SetFormat(format);
    writer.SetEOLType(eol);
    if (declaration) writer.WriteStartDocument();
    const std::string targetNamespace = object.GetTargetNamespace();
    CXmlObjectBase::ToXml_Int(&object, &writer, true, targetNamespace.c_str(), context, false);
    writer.Close();
}

// Compression of a finished document in memory, shared by the stream entry points.
CBinaryData CompressOutput(CBinaryData bytes, CompressionType compression) {
    if (compression != CompressionType_None) CQvZip().CompressData(bytes, compression);
    return bytes;
}

// The file entry points refuse zlib ahead of everything else, the version check included.
void RefuseZLibForFile(CompressionType compression) {
    if (compression == CompressionType_ZLib)
        throw CQvException("ZLIB Compression only available for To Stream methods.");
}

} // namespace

std::string CXmlObjectBase::ToXml(bool declaration, bool format, EOLType eol,
                                  const CXmlSerializationContext& context) const {
    CheckVersion();
    CTextStream stream;
    CXmlTextWriter writer(stream);
    WriteDocument(*this, writer, declaration, format, eol, context);
    return stream.m_buffer.CopyText();
}

CBinaryData CXmlObjectBase::ToXmlStream(bool declaration, bool format, XmlEncoding encoding, EOLType eol,
                                        const CXmlSerializationContext& context, CompressionType compression) const {
    CheckVersion();
    CTextStream stream(encoding);
    CXmlTextWriter writer(stream);
    WriteDocument(*this, writer, declaration, format, eol, context);
    return CompressOutput(stream.GetEncodedStream(), compression);
}

void CXmlObjectBase::ToXmlFile(const char* path, bool declaration, bool format, XmlEncoding encoding, EOLType eol,
                               const CXmlSerializationContext& context, CompressionType compression) const {
    RefuseZLibForFile(compression);
    // A compressed file is always built in memory through ToXmlStream.
    if (ASYNC_TOXMLFILE && compression == CompressionType_None) {
        // Streams through a file text sink, which refuses to flush text: this route
        // fails at the first flush (kept for compatibility).
        CheckVersion();
        CFileTextStream stream(path, encoding);
        CXmlTextWriter writer(stream);
        WriteDocument(*this, writer, declaration, format, eol, context);
        return;
    }
    CBinaryData bytes = ToXmlStream(declaration, format, encoding, eol, context, compression);
    CFileBinaryStream file(path, encoding, bytes);
    file.ToFile();
}

CBinaryData CXmlObjectBase::ToFastInfosetStream(FInfoDecl declaration, const CXmlSerializationContext& context,
                                                CompressionType compression) const {
    CheckVersion();
    CBinaryStream stream;
    CFastInfosetWriter writer(context.GetFIContext(), stream);
    writer.Open();
    writer.WriteStartDocument(declaration);
    const std::string targetNamespace = GetTargetNamespace();
    CXmlObjectBase::ToXml_Int(this, &writer, true, targetNamespace.c_str(), context, false);
    writer.WriteEndDocument();
    writer.Close();
    return CompressOutput(stream.GetBinaryStream(), compression);
}

void CXmlObjectBase::ToFastInfosetFile(const char* path, FInfoDecl declaration, const CXmlSerializationContext& context,
                                       CompressionType compression) const {
    RefuseZLibForFile(compression);
    CBinaryData bytes = ToFastInfosetStream(declaration, context, compression);
    CFileBinaryStream file(path, XmlEncoding_None, bytes);
    file.ToFile();
}

} // namespace QvXmlLib10
