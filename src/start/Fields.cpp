#include "start/Fields.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "common/Text.h"

namespace tallory {

namespace {

constexpr size_t kBlock = 16;

// Bit i set when byte i of the block is a comma, a line feed or a double quote: the only bytes
// the splitter has to look at.
uint32_t SpecialBytes(const char* block) {
#ifdef __SSE2__
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    __m128i hits = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(',')),
                                             _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n'))),
                                _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')));
    return static_cast<uint32_t>(_mm_movemask_epi8(hits));
#else
    uint32_t mask = 0;
    for (size_t i = 0; i < kBlock; ++i) {
        char c = block[i];
        if (c == ',' || c == '\n' || c == '"') mask |= 1u << i;
    }
    return mask;
#endif
}

uint32_t SpecialBytesOfTail(const char* block, size_t size) {
    uint32_t mask = 0;
    for (size_t i = 0; i < size; ++i) {
        char c = block[i];
        if (c == ',' || c == '\n' || c == '"') mask |= 1u << i;
    }
    return mask;
}

// Drops the quotes from the bytes [begin, end) of the buffer, moving the rest to the front;
// returns the new size.
uint32_t DropQuotes(char* text, uint32_t begin, uint32_t end) {
    uint32_t to = begin;
    for (uint32_t from = begin; from < end; ++from)
        if (text[from] != '"') text[to++] = text[from];
    return to - begin;
}

#ifdef __SSE2__
// Bit i set when byte i of the block is a comma or a line feed, in `separators`, or a double
// quote, in the return value.
uint32_t SeparatorBytes(const char* block, uint32_t& separators) {
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    separators = static_cast<uint32_t>(_mm_movemask_epi8(_mm_or_si128(
        _mm_cmpeq_epi8(bytes, _mm_set1_epi8(',')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')))));
    return static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'))));
}
#endif

}  // namespace

int FindSeparators(std::string_view line, uint32_t* ends, int limit) {
    const char* text = line.data();
    const size_t size = line.size();
    int count = 0;
    size_t block = 0;
#ifdef __SSE2__
    // Two blocks at a time: one mask of 32 bits.
    constexpr size_t kPair = 2 * kBlock;
    while (block + kBlock <= size) {
        uint32_t separators, high = 0;
        uint32_t quotes = SeparatorBytes(text + block, separators);
        const size_t step = block + kPair <= size ? kPair : kBlock;
        if (step == kPair) quotes |= SeparatorBytes(text + block + kBlock, high);
        if (quotes != 0) return -1;
        separators |= high << kBlock;
        // A step adds at most one separator per byte: only near the limit is it counted.
        if (count + static_cast<int>(kPair) > limit) {
            int inPair = 0;
            for (uint32_t rest = separators; rest != 0; rest &= rest - 1) ++inPair;
            if (count + inPair > limit) return -1;
        }
        while (separators != 0) {
            ends[count++] = static_cast<uint32_t>(block) + __builtin_ctz(separators);
            separators &= separators - 1;
        }
        block += step;
    }
#endif
    for (size_t at = block; at < size; ++at) {
        const char c = text[at];
        if (c == '"') return -1;
        if (c == ',' || c == '\n') {
            if (count == limit) return -1;
            ends[count++] = static_cast<uint32_t>(at);
        }
    }
    ends[count] = static_cast<uint32_t>(size);
    return count;
}

void SplitFields(std::string_view line, Fields& fields) {
    // The fields are worked out in a copy of the line: a separator past the top index becomes
    // the ":" that joins the surplus, and a field with quotes closes up over them, both in place.
    std::string& buffer = fields.buffer_;
    std::vector<Fields::Span>& spans = fields.spans_;
    buffer.assign(line);
    spans.clear();
    char* text = buffer.data();
    const size_t size = buffer.size();
    const int top = fields.top_;

    int count = 0;
    bool quoted = false;
    bool fieldQuoted = false;  // the current field holds a quote to drop
    uint32_t fieldBegin = 0;
    auto closeField = [&](uint32_t end) {
        uint32_t fieldSize = fieldQuoted ? DropQuotes(text, fieldBegin, end) : end - fieldBegin;
        spans.push_back({fieldBegin, fieldSize});
    };
    for (size_t block = 0; block < size; block += kBlock) {
        uint32_t mask = block + kBlock <= size ? SpecialBytes(text + block)
                                               : SpecialBytesOfTail(text + block, size - block);
        while (mask != 0) {
            const uint32_t at = static_cast<uint32_t>(block) + __builtin_ctz(mask);
            mask &= mask - 1;
            if (text[at] == '"') {
                quoted = !quoted;
                fieldQuoted = true;
            } else if (!quoted) {
                if (count < top) {
                    closeField(at);
                    ++count;
                    fieldBegin = at + 1;
                    fieldQuoted = false;
                } else {
                    text[at] = ':';
                }
            }
        }
    }
    closeField(static_cast<uint32_t>(size));
    if (spans.back().size == 0) --count;
    fields.count_ = count;
}

bool SameText(std::string_view a, std::string_view b) {
    std::string_view x = TrimView(a), y = TrimView(b);
    if (x.size() != y.size()) return false;
    for (size_t i = 0; i < x.size(); ++i) {
        char p = x[i], q = y[i];
        if (p >= 'a' && p <= 'z') p = static_cast<char>(p - 32);
        if (q >= 'a' && q <= 'z') q = static_cast<char>(q - 32);
        if (p != q) return false;
    }
    return true;
}

}  // namespace tallory
