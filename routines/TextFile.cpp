#include "routines/TextFile.h"

#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr std::size_t kBlock = 64UL * 1024;
constexpr char kCtrlZ = '\x1A';

/// Bytes that a line must be cut from: 254 characters, and a CR that may turn out not to be one.
constexpr std::size_t kLineBytes = TextFile::kLongestLine + 1;

const char* Find(const char* bytes, char wanted, std::size_t size) {
    return static_cast<const char*>(std::memchr(bytes, wanted, size));
}

/// True where the bytes hold more than padding and line ends.
bool HoldsText(std::string_view bytes) {
    return bytes.find_first_not_of(std::string_view("\x1A\0\r\n", 4)) != std::string_view::npos;
}

/// True where a CR has no LF directly behind it; of one that stands last nothing is said.
bool HoldsCrWithoutLf(std::string_view bytes) {
    std::size_t i = std::min(bytes.find('\r'), bytes.size()); // many files have none
#if defined(__SSE2__)
    constexpr std::size_t kWidth = sizeof(__m128i);
    const auto equal = [&](std::size_t at, char wanted) {
        const void* const sixteen = bytes.data() + at;
        const __m128i loaded = _mm_loadu_si128(static_cast<const __m128i*>(sixteen));
        return _mm_cmpeq_epi8(loaded, _mm_set1_epi8(wanted));
    };
    const auto lone = [&](std::size_t at) {
        return _mm_andnot_si128(equal(at + 1, '\n'), equal(at, '\r'));
    };
    for (; i + 4 * kWidth < bytes.size(); i += 4 * kWidth) {
        const __m128i first = _mm_or_si128(lone(i), lone(i + kWidth));
        const __m128i second = _mm_or_si128(lone(i + 2 * kWidth), lone(i + 3 * kWidth));
        if (_mm_movemask_epi8(_mm_or_si128(first, second)) != 0)
            return true;
    }
#endif
    for (; i + 1 < bytes.size(); ++i) {
        if (bytes[i] == '\r' && bytes[i + 1] != '\n')
            return true;
    }
    return false;
}

} // namespace

bool TextFile::Open(const std::string& name, const ByteSource& source, LineRules rules) {
    Close();
    if (!file_.Open(name, source))
        return false;
    rules_ = rules;
    capacity_ = kLineBytes + kBlock;
    block_ = std::make_unique_for_overwrite<char[]>(capacity_ + 1); // a line end has room behind it
    atEnd_ = false;
    return true;
}

void TextFile::Close() {
    file_.Close();
    block_.reset();
    position_ = end_ = searched_ = 0;
    atEnd_ = true;
    sawNul_ = isCovered_ = false;
    bytesRead_ = number_ = bytesBehind_ = 0;
    inLine_ = isLong_ = sawCr_ = losesText_ = isPlain_ = false;
    charLine_ = {};
    nextChar_ = 0;
}

void TextFile::SeeWhetherPlain() {
    isPlain_ = rules_ == LineRules::Classic && !sawNul_ && !sawCr_ && !inLine_;
}

/// Any line, or piece of one.
bool TextFile::NextPiece(std::string_view& line, LastCharacter last) {
    if (rules_ == LineRules::Classic ? !NextClassic(line) : !NextComplete(line)) {
        TellEnd();
        return false;
    }
    if (watch_) {
        const bool isEnded = !line.empty() && line.back() == '\n';
        if (isEnded && !(inLine_ | isCovered_ | sawNul_ | sawCr_)) [[likely]]
            watch_->LineBegins(line, ++number_);
        else
            Tell(line, isEnded, last);
    }
    if (sawNul_) [[unlikely]]
        EndAtNul(line);
    return true;
}

void TextFile::EndAtNul(std::string_view& line) {
    const std::size_t nul = line.find('\0');
    if (nul == std::string_view::npos)
        return;
    line = line.substr(0, nul);
    if (rules_ == LineRules::Complete) {
        block_[static_cast<std::size_t>(line.data() - block_.get()) + nul] = '\n';
        line = {line.data(), nul + 1};
    }
}

bool TextFile::NextClassic(std::string_view& line) {
    if (end_ - position_ < kLineBytes)
        Fill();
    if (position_ == end_)
        return false;
    char* const text = block_.get() + position_;
    const std::size_t bytes = std::min(end_ - position_, kLineBytes);
    const char* const lineFeed = Find(text, '\n', bytes);
    std::size_t taken = lineFeed ? static_cast<std::size_t>(lineFeed - text) + 1 : bytes;
    std::size_t length = taken;
    if (lineFeed && taken > 1 && text[taken - 2] == '\r') {
        text[taken - 2] = '\n'; // the line feed moves over the dropped CR; the text stays in place
        --length;
    } else if (length > kLongestLine) {
        taken = length = kLongestLine;
    }
    position_ += taken;
    line = {text, length};
    return true;
}

bool TextFile::NextComplete(std::string_view& line) {
    if (isCovered_)
        block_[position_] = covered_;
    isCovered_ = false;
    std::size_t length = 0;
    std::size_t taken = 0;
    while (!FindLineEnd(length, taken)) {
        if (!atEnd_) {
            Fill();
            continue;
        }
        if (position_ == end_)
            return false;
        length = taken = end_ - position_;
        break;
    }
    if (length > kLongestCompleteLine)
        length = taken = kLongestCompleteLine;
    char* const text = block_.get() + position_;
    position_ += taken;
    if (taken == length) { // the line end that it lacks
        covered_ = text[length];
        isCovered_ = position_ < end_;
        isLong_ = isCovered_ || isLong_;
    }
    text[length] = '\n';
    line = {text, length + 1};
    return true;
}

int TextFile::ReadCompleteChar() {
    if (nextChar_ == charLine_.size()) {
        nextChar_ = 0;
        charLine_ = {};
        if (!NextComplete(charLine_)) {
            TellEnd();
            return kEnd;
        }
    }
    return static_cast<unsigned char>(charLine_[nextChar_++]);
}

/// A CR ends a run: what it is depends on what follows.
std::size_t TextFile::ReadRun(char* to, std::size_t room, char stop) {
    if (rules_ == LineRules::Complete)
        return 0;
    const char* const from = block_.get() + position_;
    std::size_t size = std::min(end_ - position_, room);
    for (const char end : {stop, '\r'}) {
        if (const char* const found = Find(from, end, size))
            size = static_cast<std::size_t>(found - from);
    }
    std::memcpy(to, from, size);
    position_ += size;
    return size;
}

/// The length of the next line, and of it with its line end; false where more must be read to tell.
bool TextFile::FindLineEnd(std::size_t& length, std::size_t& taken) {
    char* const text = block_.get() + position_;
    const std::size_t bytes = end_ - position_;
    const std::size_t from = std::max(searched_, position_) - position_;
    const char* const lineFeed = Find(text + from, '\n', bytes - from);
    const std::size_t limit = lineFeed ? static_cast<std::size_t>(lineFeed - text) : bytes;
    searched_ = position_ + limit;
    const char* const cr = Find(text, '\r', limit);
    if (!cr) {
        length = limit;
        taken = limit + 1;
        return lineFeed || bytes > kLongestCompleteLine;
    }
    length = static_cast<std::size_t>(cr - text);
    taken = length;
    while (taken < bytes && text[taken] == '\r')
        ++taken;
    if (taken == bytes && !atEnd_ && length <= kLongestCompleteLine)
        return false; // the CRs may go on, and an LF follow
    const bool belongToLineFeed = taken < bytes && text[taken] == '\n';
    taken = belongToLineFeed ? taken + 1 : length + 1;
    return true;
}

/// Moves what is left to the front of the block and adds the next piece of the file behind it.
void TextFile::Fill() {
    if (atEnd_)
        return;
    const std::size_t left = end_ - position_;
    if (left + kBlock > capacity_) { // a long line, by the complete rules
        capacity_ = 2 * (left + kBlock);
        auto larger = std::make_unique_for_overwrite<char[]>(capacity_ + 1);
        std::memcpy(larger.get(), block_.get() + position_, left);
        block_ = std::move(larger);
    } else {
        std::memmove(block_.get(), block_.get() + position_, left);
    }
    searched_ -= std::min(searched_, position_);
    end_ = left;
    position_ = 0;

    char* const fresh = block_.get() + end_;
    std::size_t size = ReadBlock(fresh, kBlock);
    atEnd_ = size < kBlock;
    if (const char* const ctrlZ = Find(fresh, kCtrlZ, size)) {
        const std::size_t kept = static_cast<std::size_t>(ctrlZ - fresh);
        if (watch_)
            LookBehindEnd({ctrlZ + 1, size - kept - 1});
        size = kept;
        atEnd_ = true;
    }
    sawNul_ = sawNul_ || Find(fresh, '\0', size) != nullptr;
    if (watch_ && !sawCr_) {
        // A CR that stands last is looked at with what follows it.
        const std::size_t before = left > 0 && fresh[-1] == '\r' ? 1 : 0;
        const std::string_view bytes(fresh - before, size + before);
        sawCr_ = HoldsCrWithoutLf(bytes) || (atEnd_ && bytes.ends_with('\r'));
    }
    end_ += size;
    SeeWhetherPlain();
}

std::size_t TextFile::ReadBlock(char* bytes, std::size_t size) {
    const std::size_t read = file_.Read(bytes, size);
    bytesRead_ += read;
    return watch_ && !watch_->GoesOn(bytesRead_) ? 0 : read;
}

void TextFile::EndHere() {
    if (watch_) {
        const std::string_view rest(block_.get() + position_, end_ - position_);
        losesText_ = losesText_ || HoldsText(rest);
        bytesBehind_ += rest.size() + charLine_.size() - nextChar_;
        if (!atEnd_)
            LookBehindEnd({});
    }
    atEnd_ = true;
    position_ = end_;
    charLine_ = {};
    nextChar_ = 0;
}

/// Takes what lies behind the end of reading, of which these are the first bytes, into account.
void TextFile::LookBehindEnd(std::string_view bytes) {
    std::array<char, 4096> more;
    for (;;) {
        losesText_ = losesText_ || HoldsText(bytes);
        bytesBehind_ += bytes.size();
        bytes = {more.data(), file_.Read(more.data(), more.size())};
        if (bytes.empty())
            return;
    }
}

/// Tells of a piece before a NUL in it takes effect.
void TextFile::Tell(std::string_view line, bool isEnded, LastCharacter last) {
    const bool classic = rules_ == LineRules::Classic;
    const bool atEndOfFile = atEnd_ && position_ == end_;
    LinePiece piece;
    number_ += inLine_ ? 0 : 1;
    piece.number = number_;
    piece.continues = inLine_;
    if (classic)
        isLong_ = (inLine_ && isLong_) || (!isEnded && line.size() == kLongestLine);
    piece.isLong = isLong_;
    const bool goesOn = classic ? !isEnded && !atEndOfFile : isCovered_;
    inLine_ = goesOn;
    isLong_ = isLong_ && goesOn;
    const std::size_t nul = sawNul_ ? line.find('\0') : std::string_view::npos;
    piece.hasNul = nul != std::string_view::npos && HoldsText(line);
    piece.text = line.substr(0, nul);
    if (classic) {
        piece.losesLast = !isEnded && atEndOfFile && last == LastCharacter::Lost;
        if (sawCr_) {
            std::string_view text = line.substr(0, line.size() - (isEnded ? 1 : 0));
            const std::size_t run = text.size() - (text.find_last_not_of('\r') + 1);
            piece.hasCrRun = isEnded && run > 0;
            text.remove_suffix(isEnded ? run : 0);
            piece.hasLoneCr = Find(text.data(), '\r', text.size()) != nullptr;
        }
    }
    SeeWhetherPlain();
    watch_->PieceBegins(piece);
}

void TextFile::TellEnd() {
    if (watch_ && losesText_)
        watch_->EndsEarly(bytesBehind_);
    losesText_ = false;
}
