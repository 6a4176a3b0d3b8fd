#pragma once

#include "BinaryData.h"
#include "CriticalSection.h"
#include "QvExport.h"
#include "QvTypes.h"

namespace QvXmlLib10 {

// Deflate compression in a gzip or zlib wrapper, on zlib. Arrays handed in and out are
// allocated with new[]; an operation that succeeds frees the array it was given and
// stores its result in its place.
class QVXML_API CQvZip : public CInstanceMonitor {
public:
    CQvZip();
    ~CQvZip() override;

    // Inflates a complete gzip or zlib stream (zlib tells the two apart by their
    // headers). Anything else, a truncated stream included, is left as it was: there is
    // no failure, and no size limit on the result.
    void Decompress(unsigned char** data, unsigned long* length);
    // Deflates at level 1 into an array no larger than the input. Input that does not
    // shrink throws "Failed to compress data. [Error Code: %d]" with the result of the
    // last deflate, and the input stands. A type other than gzip or zlib changes nothing.
    void Compress(unsigned char** data, unsigned long* length, CompressionType type);
    // Compresses the content of `data` through Compress. Empty data stays empty; on
    // failure `data` is left empty, since its bytes were taken out before compressing.
    void CompressData(CBinaryData& data, CompressionType type);
};

} // namespace QvXmlLib10
