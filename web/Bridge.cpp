// What the page's worker calls, and what it is asked for: numbers and addresses in the module's
// memory. Texts go both ways in UTF-8.

#include "web/Session.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

using convfile::web::Session;

extern "C" {
[[clang::import_module("page"), clang::import_name("write")]] void PageWrite(const char* bytes,
                                                                             std::size_t size);
[[clang::import_module("page"), clang::import_name("progress")]] void PageProgress(double bytes);
[[noreturn, clang::import_module("page"), clang::import_name("outOfMemory")]] void
PageOutOfMemory();

/// Nothing is ever destroyed at the end of a thread: the module's own lasts as long as it does.
int __cxa_thread_atexit(void (*)(void*), void*, void*) {
    return 0;
}
}

namespace {

/// A text for the page, until the next one.
struct Answer {
    const char* bytes;
    std::uint32_t size;
};

const Answer* Give(std::string text) {
    static std::string kept;
    static Answer answer;
    kept = std::move(text);
    answer = {kept.data(), static_cast<std::uint32_t>(kept.size())};
    return &answer;
}

/// Hands what is written to the page, piece by piece.
class PageBuffer final : public std::streambuf {
    std::streamsize xsputn(const char* bytes, std::streamsize size) override {
        PageWrite(bytes, static_cast<std::size_t>(size));
        return size;
    }
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        PageWrite(&byte, 1);
        return traits_type::not_eof(c);
    }
};

} // namespace

extern "C" {

[[clang::export_name("open")]] Session* PageOpen(std::size_t size) {
    std::set_new_handler(PageOutOfMemory);
    return Session::Open(size).release();
}

[[clang::export_name("bytes")]] char* PageBytes(Session* session) {
    return session->Bytes();
}

/// Room for the texts that come with a call.
[[clang::export_name("room")]] char* PageRoom(std::size_t size) {
    static std::string room;
    room.resize(size);
    return room.data();
}

[[clang::export_name("convert")]] void PageConvert(Session* session, const char* name,
                                                   std::size_t nameSize, const char* format,
                                                   std::size_t formatSize, bool complete) {
    session->Convert({name, nameSize}, {format, formatSize}, complete, [](std::uint64_t bytes) {
        PageProgress(static_cast<double>(bytes));
        return true;
    });
}

[[clang::export_name("formats")]] const Answer* PageFormats() {
    return Give(convfile::web::FormatNames());
}
[[clang::export_name("overview")]] const Answer* PageOverview(const Session* session) {
    return Give(session->Overview());
}
[[clang::export_name("rows")]] const Answer* PageRows(const Session* session, std::size_t first,
                                                      std::size_t count) {
    return Give(session->Rows(first, count));
}
[[clang::export_name("lines")]] const Answer* PageLines(const Session* session, std::size_t first,
                                                        std::size_t count) {
    return Give(session->Lines(first, count));
}
[[clang::export_name("rowOfLine")]] long PageRowOfLine(const Session* session, std::size_t line) {
    return session->RowOfLine(line);
}
[[clang::export_name("drawingSize")]] const Answer* PageDrawingSize(Session* session) {
    return Give(session->DrawingSize());
}
[[clang::export_name("markAt")]] const Answer* PageMarkAt(Session* session, double x, double y,
                                                          double farthest) {
    return Give(session->MarkAt(x, y, farthest));
}
[[clang::export_name("markOfRow")]] const Answer* PageMarkOfRow(Session* session, std::size_t row) {
    return Give(session->MarkOfRow(row));
}

[[clang::export_name("render")]] void PageRender(const Session* session, const char* view,
                                                 std::size_t size) {
    PageBuffer buffer;
    std::ostream out(&buffer);
    session->Render({view, size}, out);
}

} // extern "C"
