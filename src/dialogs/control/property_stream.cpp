#include "dialogs/control/property_stream.h"

#include <olectl.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "com/entry.h"
#include "com/hresult_failure.h"

namespace vrx {
namespace {

constexpr std::uint8_t kMark[] = {'V', 'r', 'x', 'P'};
constexpr std::uint32_t kVersion = 1;

using ByteList = std::vector<std::uint8_t>;

template <class Number>
void append(ByteList& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> (8 * i)));
}

ComPtr<IStream> makeStream() {
    ComPtr<IStream> stream;
    throwIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    return stream;
}

void rewind(IStream& stream) { throwIfFailed(stream.Seek({}, STREAM_SEEK_SET, nullptr)); }

/// Nothing less than all of them.
void readAll(IStream& stream, std::uint8_t* bytes, ULONG count) {
    while (count > 0) {
        ULONG got = 0;
        throwIfFailed(callHost([&] { return stream.Read(bytes, count, &got); }));
        if (got == 0 || got > count) throw HresultFailure{STG_E_READFAULT};
        bytes += got;
        count -= got;
    }
}

template <class Number>
Number readNumber(IStream& stream) {
    std::uint8_t bytes[sizeof(Number)];
    readAll(stream, bytes, sizeof bytes);
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof bytes; ++i) number |= std::uint64_t{bytes[i]} << (8 * i);
    return static_cast<Number>(number);
}

/// In portions: the count may promise more than the stream has.
ByteList readBytes(IStream& stream, std::uint32_t count) {
    constexpr std::uint32_t kPortion = 65536;
    const Held<ByteList> bytes;
    while (bytes->size() < count) {
        const auto portion = std::min(kPortion, count - static_cast<std::uint32_t>(bytes->size()));
        bytes->resize(bytes->size() + portion);
        readAll(stream, bytes->data() + bytes->size() - portion, portion);
    }
    return std::move(*bytes);
}

ByteList pictureBytes(IPicture* picture) {
    if (!picture) return {};
    const HeldReference kept(interfaceOf<IPersistStream>(picture));
    if (!kept) throw HresultFailure{E_NOINTERFACE};
    const HeldReference stream(makeStream());
    throwIfFailed(callHost([&] { return kept->Save(stream.get(), FALSE); }));
    STATSTG size{};
    throwIfFailed(stream->Stat(&size, STATFLAG_NONAME));
    rewind(*stream.get());
    return readBytes(*stream.get(), size.cbSize.LowPart);
}

ComPtr<IPicture> pictureOf(const ByteList& bytes) {
    if (bytes.empty()) return {};
    const ComPtr<IStream> stream = makeStream();
    throwIfFailed(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    rewind(*stream);
    ComPtr<IPicture> picture;
    throwIfFailed(
        OleCreatePictureIndirect(nullptr, IID_IPicture, FALSE, reinterpret_cast<void**>(picture.put())));
    const auto kept = picture.as<IPersistStream>();
    if (!kept) throw HresultFailure{E_NOINTERFACE};
    throwIfFailed(kept->Load(stream.get()));
    return picture;
}

}  // namespace

ByteList propertyBytes(const KeptProperties& properties) {
    const ByteList icon = pictureBytes(properties.icon.get());
    ByteList bytes(std::begin(kMark), std::end(kMark));
    append(bytes, kVersion);
    append(bytes, static_cast<std::uint16_t>(properties.pointer));
    append(bytes, static_cast<std::uint32_t>(icon.size()));
    bytes.insert(bytes.end(), icon.begin(), icon.end());
    return bytes;
}

void writeProperties(IStream& stream, const KeptProperties& properties) {
    const Held<ByteList> bytes(propertyBytes(properties));
    const auto count = static_cast<ULONG>(bytes->size());
    ULONG written = 0;
    throwIfFailed(callHost([&] { return stream.Write(bytes->data(), count, &written); }));
    if (written != count) throw HresultFailure{STG_E_WRITEFAULT};
}

KeptProperties readProperties(IStream& stream) {
    std::uint8_t mark[sizeof kMark];
    readAll(stream, mark, sizeof mark);
    if (std::memcmp(mark, kMark, sizeof mark) != 0) throw HresultFailure{STG_E_INVALIDHEADER};
    const auto version = readNumber<std::uint32_t>(stream);
    if (version == 0) throw HresultFailure{STG_E_INVALIDHEADER};
    if (version > kVersion) throw HresultFailure{STG_E_OLDDLL};
    KeptProperties properties;
    properties.pointer = static_cast<MousePointer>(readNumber<std::uint16_t>(stream));
    properties.icon = pictureOf(readBytes(stream, readNumber<std::uint32_t>(stream)));
    return properties;
}

}  // namespace vrx
