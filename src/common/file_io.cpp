#include "common/file_io.h"

#include <algorithm>

#include "com/variant_convert.h"
#include "com/win32_error.h"

namespace vrx {
namespace {

constexpr int kSiblingTries = 100;
// What network drives take in one piece on every system.
constexpr std::size_t kMaxTransfer = 1U << 25;
constexpr DWORD kCopiedAtOnce = 1U << 20;

[[noreturn]] void throwLastError() { throw win32Error(GetLastError()); }

/// The path with the prefix that turns the system's limit of 260 characters off, where it names a drive.
std::wstring withoutLimit(const std::wstring& path) {
    std::vector<wchar_t> full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr) + 1);
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    const bool onDrive = length > 2 && length < full.size() && full[1] == L':' && full[2] == L'\\';
    return onDrive ? L"\\\\?\\" + std::wstring(full.data(), length) : path;
}

/// A path as the system takes it. A zero character would cut it short, and mean another file.
std::wstring systemPath(const std::u16string& path) {
    // A file beside it may have a name that is longer by so much.
    constexpr std::size_t kLongestSibling = 20;
    if (path.find(u'\0') != std::u16string::npos) throw platformError(Platform::BadFileName);
    const std::wstring name = toWide(path);
    return name.size() + kLongestSibling < MAX_PATH ? name : withoutLimit(name);
}

bool isFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// A folder is refused like a file without rights, however its name is written.
Error whyNotReadable(const std::wstring& path, DWORD error) {
    return isFolder(GetFileAttributesW(path.c_str())) ? platformError(Platform::PathFileAccess)
                                                      : win32Error(error);
}

KernelHandle openForReading(const std::wstring& path) {
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    KernelHandle file = validHandle(CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING,
                                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) throw whyNotReadable(path, GetLastError());
    // Reading from a console or a pipe could wait for ever.
    if (GetFileType(file.get()) != FILE_TYPE_DISK) throw platformError(Platform::PathFileAccess);
    return file;
}

std::uint64_t sizeOf(HANDLE file) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size)) throwLastError();
    return static_cast<std::uint64_t>(size.QuadPart);
}

/// Leaves the place for the next bytes at the file's begin.
void setSize(HANDLE file, std::size_t size) {
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    if (!SetFilePointerEx(file, end, nullptr, FILE_BEGIN) || !SetEndOfFile(file) ||
        !SetFilePointerEx(file, {}, nullptr, FILE_BEGIN))
        throwLastError();
}

/// How many bytes there are, as many as fit at most.
std::size_t readAll(HANDLE file, std::span<std::uint8_t> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        DWORD read = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size() - done, kMaxTransfer));
        if (!ReadFile(file, bytes.data() + done, count, &read, nullptr)) throwLastError();
        if (read == 0) break;
        done += read;
    }
    return done;
}

void writeAll(HANDLE file, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), kMaxTransfer));
        if (!WriteFile(file, bytes.data(), count, &written, nullptr)) throwLastError();
        if (written == 0) throw platformError(Platform::DiskFull);
        bytes = bytes.subspan(written);
    }
}

/// Refuses what a new file must not take the place of.
void checkTarget(DWORD attributes) {
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
        throw platformError(Platform::PathFileAccess);
    }
}

void flush(HANDLE file) {
    if (!FlushFileBuffers(file)) throwLastError();
}

/// A file that is to go; none where the user's rights do not let it. Error 70 for one that a program has
/// open.
KernelHandle openToGo(const std::wstring& path) {
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    KernelHandle file = validHandle(
        CreateFileW(path.c_str(), DELETE | READ_CONTROL, share, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file && GetLastError() != ERROR_ACCESS_DENIED) throwLastError();
    return file;
}

bool isSameFile(HANDLE file, const std::wstring& path) {
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const KernelHandle other =
        validHandle(CreateFileW(path.c_str(), 0, share, nullptr, OPEN_EXISTING, 0, nullptr));
    BY_HANDLE_FILE_INFORMATION one{};
    BY_HANDLE_FILE_INFORMATION two{};
    return other && GetFileInformationByHandle(file, &one) && GetFileInformationByHandle(other.get(), &two) &&
           one.dwVolumeSerialNumber == two.dwVolumeSerialNumber && one.nFileIndexHigh == two.nFileIndexHigh &&
           one.nFileIndexLow == two.nFileIndexLow;
}

}  // namespace

InputFile::InputFile(const std::u16string& path) {
    const std::wstring name = systemPath(path);
    file_ = openForReading(name);
}

std::uint64_t InputFile::size() const { return sizeOf(file_.get()); }

std::size_t InputFile::readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    LARGE_INTEGER place{};
    place.QuadPart = static_cast<LONGLONG>(offset);
    if (!SetFilePointerEx(file_.get(), place, nullptr, FILE_BEGIN)) throwLastError();
    return readAll(file_.get(), bytes);
}

Bytes readFileAndZero(const std::u16string& path) {
    const InputFile file(path);
    Bytes bytes(file.size() + 1);
    const std::size_t read = file.readAt(0, {bytes.data(), bytes.size() - 1});
    bytes.data()[read] = 0;
    bytes.shrink(read + 1);
    return bytes;
}

void copyFile(const std::u16string& source, const std::u16string& target) {
    const KernelHandle file = openForReading(systemPath(source));
    if (isSameFile(file.get(), systemPath(target))) throw platformError(Platform::PermissionDenied);
    FileReplacement copy(target);
    std::vector<std::uint8_t> bytes(kCopiedAtOnce);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(file.get(), bytes.data(), kCopiedAtOnce, &read, nullptr)) throwLastError();
        if (read == 0) break;
        copy.write({bytes.data(), read});
    }
    copy.commit();
}

bool findsFile(const std::u16string& path) {
    WIN32_FIND_DATAW found{};
    const auto search = validHandle<FindHandle>(FindFirstFileW(systemPath(path).c_str(), &found));
    bool more = static_cast<bool>(search);
    while (more && isFolder(found.dwFileAttributes)) more = FindNextFileW(search.get(), &found);
    return more;
}

bool takesFiles(const std::u16string& folder) {
    try {
        const FileReplacement probe(folder + u"\\~vrx");
        return true;
    } catch (const Error& error) {
        const auto reason = static_cast<Platform>(error.number);
        return reason != Platform::PathFileAccess && reason != Platform::PermissionDenied;
    }
}

std::u16string temporaryFolder() {
    wchar_t folder[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH) throw platformError(Platform::PathNotFound);
    return {folder, folder + length};
}

void deleteIfPossible(const std::u16string& path) { DeleteFileW(systemPath(path).c_str()); }

TemporaryFile::TemporaryFile() {
    wchar_t name[MAX_PATH + 1];
    if (!GetTempFileNameW(toWide(temporaryFolder()).c_str(), L"vrx", 0, name)) throwLastError();
    path_ = name;
}

TemporaryFile::~TemporaryFile() { DeleteFileW(path_.c_str()); }

std::u16string TemporaryFile::path() const {
    wchar_t name[MAX_PATH + 1];
    const DWORD length = GetShortPathNameW(path_.c_str(), name, MAX_PATH + 1);
    return fromWide(length != 0 && length <= MAX_PATH ? std::wstring(name, length) : path_);
}

FileReplacement::FileReplacement(Unopened, const std::u16string& path) : path_(systemPath(path)) {}

FileReplacement::FileReplacement(const std::u16string& path) : FileReplacement(Unopened{}, path) {
    const DWORD attributes = GetFileAttributesW(path_.c_str());
    const bool isNew = attributes == INVALID_FILE_ATTRIBUTES;
    if (!isNew) {
        checkTarget(attributes);
        const KernelHandle old = openToGo(path_);
        if (!old) return;
        traits_.emplace(attributes, old.get());
    }
    if (!openSibling()) {
        const DWORD error = GetLastError();
        // The folder takes no new files; a file that is there already may still be written.
        if (isNew || error != ERROR_ACCESS_DENIED) throw win32Error(error);
    } else if (traits_ && !traits_->giveRights(sibling_, file_.get())) {
        dropSibling();
    }
}

FileReplacement::~FileReplacement() { dropSibling(); }

void FileReplacement::dropSibling() {
    file_.reset();
    if (!sibling_.empty()) DeleteFileW(sibling_.c_str());
    sibling_.clear();
}

bool FileReplacement::openSibling() {
    const std::wstring folder = path_.substr(0, path_.find_last_of(L"\\/:") + 1);
    const DWORD attributes = FILE_ATTRIBUTE_NORMAL | (traits_ ? traits_->creationAttributes() : 0);
    for (int i = 0; i < kSiblingTries; ++i) {
        const auto number =
            static_cast<unsigned>(GetCurrentProcessId() * 131 + GetTickCount() + static_cast<unsigned>(i));
        std::wstring name = folder + L"~vrx" + std::to_wstring(number) + L".tmp";
        file_ = validHandle(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        attributes | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        if (file_) {
            sibling_ = std::move(name);
            return true;
        }
        if (GetLastError() != ERROR_FILE_EXISTS) return false;
    }
    return false;
}

void FileReplacement::write(std::span<const std::uint8_t> bytes) {
    if (file_) {
        writeAll(file_.get(), bytes);
    } else {
        waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    }
}

void FileReplacement::commit() {
    if (!file_) return overwriteTarget();
    flush(file_.get());
    if (traits_) traits_->giveCreationTime(file_.get());
    const bool lacksAttributes = traits_ && !traits_->hasAttributes(sibling_);
    file_.reset();
    if (lacksAttributes && !traits_->giveAttributes(sibling_)) throwLastError();
    moveSibling();
    sibling_.clear();
}

/// One step: the name means the old file or the new one at any time. ReplaceFile would take two, with neither
/// between.
void FileReplacement::moveSibling() {
    if (MoveFileExW(sibling_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING)) return;
    const DWORD error = GetLastError();
    // A target that another program has open is refused like one without rights.
    const bool isInUse =
        error == ERROR_ACCESS_DENIED && GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES;
    throw win32Error(isInUse ? ERROR_SHARING_VIOLATION : error);
}

void FileReplacement::overwriteTarget() {
    const KernelHandle target = validHandle(
        CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target) throwLastError();
    // Room first: a full disk leaves the old bytes.
    if (waiting_.size() > sizeOf(target.get())) setSize(target.get(), waiting_.size());
    writeAll(target.get(), waiting_);
    setSize(target.get(), waiting_.size());
    flush(target.get());
}

}  // namespace vrx
