#pragma once

/// \file
/// Typed reading and writing on a byte stream, with nested chunks.

#include "math/api.h"
#include "math/platform/stream.h"

#include <memory>

/// Direction of `CKVStreamHelper::MovePos`.
enum STMHELPERDIR : int
{
    STMHELPERDIR_FORWARD = 0, ///< Towards the end.
    STMHELPERDIR_BACK = 1     ///< Towards the start.
};

/// Reads and writes scalars and chunks on an `IStream`.
///
/// A helper lives on the stack of one call. Several helpers may wrap one stream at the same time: an object that saves
/// its members hands them the bare stream while its own chunk is open, and each member makes a helper of its own. All
/// bookkeeping therefore goes by stream positions.
///
/// **Bytes.** Every scalar is written little-endian by one `IStream::Write`; a truth value is one byte. A chunk is
///
///     tag, version, length      4 bytes each, little-endian
///     content                   length bytes
///
/// and may hold chunks. The length is 0xFFFFFFFF while the chunk is being written and patched when it is closed, so
/// that a chunk whose writer gave up is refused by a reader.
///
/// **Results.** All operations return `S_OK` or a negative code:
/// - a helper on a null stream returns `E_FAIL` from everything;
/// - a null pointer returns `E_POINTER`;
/// - a negative code of the stream is returned as it came;
/// - a stream that transfers fewer bytes than asked for gives `E_FAIL`.
///
/// A read that fails leaves its target as it was; one that found too few bytes also leaves the position.
///
/// **Bounds.** While a chunk is open for reading in this helper, nothing is read past its end (`E_FAIL`), and a chunk
/// within it must end within it. A read by another helper on the same stream can pass the end, which the next read
/// here, or `ChunkReadClose`, reports.
class MATH_API CKVStreamHelper
{
public:
    /// Takes a reference to the stream, which may be null.
    explicit CKVStreamHelper(IStream * stream);

    CKVStreamHelper(CKVStreamHelper const &) = delete;
    CKVStreamHelper & operator=(CKVStreamHelper const &) = delete;

    /// Gives back the stream without touching it. A chunk still open for writing keeps the length of an unfinished
    /// chunk; one still open for reading leaves the position where it stands.
    virtual ~CKVStreamHelper();

    /// Writes one byte, 0 to 255.
    virtual long PutUInt8(unsigned char value);
    /// Reads one byte, 0 to 255.
    virtual long GetUInt8(unsigned char * value);

    /// Writes one byte, by its bits: the stream does not tell whether a `char` has a sign.
    virtual long PutInt8(char value);
    /// Reads one byte, by its bits.
    virtual long GetInt8(char * value);

    /// Writes the byte 1 for any value but 0.
    virtual long PutBool(int value);
    /// Writes the byte 1 or 0, so that a reader need not know which form wrote it.
    virtual long PutBool(bool value);
    /// Gives 1 for any byte but 0.
    virtual long GetBool(int * value);

    /// \name IEEE 754 numbers
    /// Every bit pattern survives, those of NaNs and of negative zero included.
    /// \{

    /// Writes four bytes.
    virtual long PutFloat(float value);
    /// Reads four bytes.
    virtual long GetFloat(float * value);
    /// Writes eight bytes.
    virtual long PutDouble(double value);
    /// Reads eight bytes.
    virtual long GetDouble(double * value);
    /// \}

    /// \name Raw bytes
    /// No length is stored. A count of 0 does nothing, and allows a null pointer.
    /// \{

    /// Writes `count` bytes by one `IStream::Write`.
    virtual long PutByteArray(char const * bytes, unsigned long count);
    /// Reads `count` bytes: all of them, or none reaches `bytes`. More than the stream, or the chunk being read, still
    /// holds are refused with `E_FAIL`; where there is no memory to read so many at once, with `E_OUTOFMEMORY`.
    virtual long GetByteArray(char * bytes, unsigned long count);
    /// \}

    /// Gives the position of the stream; `E_FAIL` where an `unsigned long` cannot hold it.
    virtual long GetPos(unsigned long * position);

    /// Moves the position by `distance` bytes.
    /// \return `S_OK`; `E_INVALIDARG` for an unknown direction or a target before the start of the stream; `E_FAIL` for
    /// a target outside the innermost chunk being read. The position stays where it was on failure. While chunks are
    /// only being written it moves freely, so that a writer who gives up can go back to where it began.
    virtual long MovePos(STMHELPERDIR direction, unsigned long distance);

    /// Begins a chunk at the position. Tag and version are the low 32 bits of the arguments.
    /// On failure no chunk is open and the position is where it was, though bytes may have been written.
    virtual long ChunkWriteOpen(unsigned long tag, unsigned long version);

    /// Ends the innermost chunk at the position, and leaves the position there.
    /// \return `S_OK`; `E_FAIL` when the innermost open chunk is not one being written, which changes nothing, or when
    /// the content is longer than the length can tell (0xFFFFFFFE bytes). A chunk that was open is closed in any case.
    virtual long ChunkWriteClose();

    /// Enters the chunk at the position.
    /// \param tag the tag that it must carry, in the low 32 bits
    /// \param version receives its version, a value below 2^32
    /// \return `S_OK`; `E_FAIL` for another tag, an incomplete header, an unfinished chunk, and a chunk that claims
    /// more than the chunk around it or the stream holds. On failure no chunk is entered, the position is where it was
    /// and `version` is unwritten.
    virtual long ChunkReadOpen(unsigned long tag, unsigned long * version);

    /// Leaves the innermost chunk: skips what was not read, so that the position is its end.
    /// \return `S_OK`; `E_FAIL` when the innermost open chunk is not one being read, which changes nothing, or when the
    /// position had been moved out of the chunk behind this helper's back. A chunk that was open is closed in any case.
    virtual long ChunkReadClose();

private:
    struct OpenChunk;

    template <typename Value>
    long PutScalar(Value value);
    template <typename Value>
    long GetScalar(Value * value);

    long WriteBytes(void const * source, unsigned long count);
    long ReadBytes(void * target, unsigned long count);
    long CheckBounds(unsigned long count);
    long GetPosition(unsigned long long & position);
    long SetPosition(unsigned long long position);
    long GetReadableEnd(unsigned long long & end);
    long WriteHeader(unsigned long tag, unsigned long version);
    long ReadHeader(unsigned long tag, unsigned long & version, OpenChunk & chunk);
    long PatchLength(OpenChunk const & chunk);
    OpenChunk const * GetInnermostRead() const;
    std::unique_ptr<OpenChunk> TakeInnermost(bool writing);

    IStream * m_stream;
    std::unique_ptr<OpenChunk> m_innermost;
};
