#include "app/OutputFile.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace convfile::app {

namespace {

namespace fs = std::filesystem;

constexpr std::intptr_t kNoFile = -1;

#if defined(_WIN32)

unsigned long ProcessNumber() {
    return GetCurrentProcessId();
}

/// Makes a file that is not there; one that is open can be removed all the same.
std::intptr_t CreateNew(const fs::path& path) {
    HANDLE const file =
        CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        errno = GetLastError() == ERROR_FILE_EXISTS ? EEXIST : EACCES;
    return reinterpret_cast<std::intptr_t>(file);
}

std::streamsize WriteSome(std::intptr_t file, const char* bytes, std::streamsize size) {
    constexpr std::streamsize kAtOnce = 1L << 30;
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(size < kAtOnce ? size : kAtOnce);
    return WriteFile(reinterpret_cast<HANDLE>(file), bytes, wanted, &written, nullptr) ? written
                                                                                       : -1;
}

bool CloseFile(std::intptr_t file) {
    return CloseHandle(reinterpret_cast<HANDLE>(file)) != 0;
}

bool MayWrite(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

#else

long ProcessNumber() {
    return getpid();
}

std::intptr_t CreateNew(const fs::path& path) {
    constexpr mode_t kAsUsual = 0666;
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kAsUsual);
}

std::streamsize WriteSome(std::intptr_t file, const char* bytes, std::streamsize size) {
    ssize_t written = 0;
    do {
        written = write(static_cast<int>(file), bytes, static_cast<std::size_t>(size));
    } while (written < 0 && errno == EINTR);
    return written;
}

bool CloseFile(std::intptr_t file) {
    return close(static_cast<int>(file)) == 0;
}

bool MayWrite(const fs::path& path) {
    return access(path.c_str(), W_OK) == 0;
}

#endif

/// Where links lead, also to where there is no file yet.
fs::path BehindLinks(fs::path path) {
    constexpr int kMostLinks = 40; // as the system follows
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

} // namespace

/// Hands on to the file whatever it gets: who writes has a buffer already.
class OutputFile::Buffer final : public std::streambuf {
public:
    explicit Buffer(std::intptr_t file) : file_(file) {}
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() override { Close(); }

    bool Close() {
        const std::intptr_t file = std::exchange(file_, kNoFile);
        return file == kNoFile || CloseFile(file);
    }

private:
    std::streamsize xsputn(const char* bytes, std::streamsize size) override {
        std::streamsize done = 0;
        while (done < size) {
            const std::streamsize written = WriteSome(file_, bytes + done, size - done);
            if (written <= 0)
                break;
            done += written;
        }
        return done;
    }
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? traits_type::not_eof(c) : traits_type::eof();
    }

    std::intptr_t file_;
};

OutputFile::OutputFile() = default;

OutputFile::~OutputFile() {
    Discard();
}

bool OutputFile::Open(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    const bool isThere = fs::exists(status);
    if (fs::is_directory(status) || !target.has_filename())
        return false;
    if (isThere && !fs::is_regular_file(status)) {
        if (!device_.open(target, std::ios::out | std::ios::binary))
            return false;
        stream_.rdbuf(&device_);
        return true;
    }
    target_ = BehindLinks(target);
    if ((isThere && !MayWrite(target_)) || !CreateBeside())
        return false;
    if (isThere)
        fs::permissions(unfinished_, status.permissions(), error);
    stream_.rdbuf(buffer_.get());
    return true;
}

bool OutputFile::CreateBeside() {
    static std::atomic<unsigned> count = 0;
    std::intptr_t file = kNoFile;
    do {
        const std::string name =
            ".convfile-" + std::to_string(ProcessNumber()) + "-" + std::to_string(count++);
        unfinished_ = target_.parent_path() / name;
        errno = 0;
        leftover_.Make(unfinished_, [&] {
            file = CreateNew(unfinished_);
            return file != kNoFile;
        });
    } while (file == kNoFile && errno == EEXIST);
    if (file == kNoFile)
        return false;
    buffer_ = std::make_unique<Buffer>(file);
    return true;
}

bool OutputFile::Finish() {
    stream_.flush();
    bool whole = static_cast<bool>(stream_);
    if (!buffer_)
        return device_.close() && whole;
    whole = buffer_->Close() && whole;
    if (!whole) {
        Discard();
        return false;
    }
    leftover_.End([&] {
        std::error_code error;
        fs::rename(unfinished_, target_, error);
        whole = !error;
        if (error)
            fs::remove(unfinished_, error);
    });
    Forget();
    return whole;
}

void OutputFile::Discard() {
    if (buffer_)
        buffer_->Close();
    leftover_.End([&] {
        std::error_code error;
        fs::remove(unfinished_, error);
    });
    Forget();
}

/// Whoever still has the stream writes nowhere.
void OutputFile::Forget() {
    stream_.rdbuf(nullptr);
    buffer_.reset();
}

} // namespace convfile::app
