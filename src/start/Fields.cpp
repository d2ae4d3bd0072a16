#include "start/Fields.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif
#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

#include <bit>

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

// Writes base + the position of each set bit of `mask`, lowest first, from `out` on, `count` of
// them (the mask's bit count). They are written eight at a time whether the mask has that many or
// not, so that the loop's end does not hang on the count: `out` must have room for the count
// rounded up to eight. The surplus entries hold positions past the block, which are overwritten
// or never read.
template <class Mask>
inline void WriteBitPositions(uint32_t* out, uint32_t base, Mask mask, int count) {
    for (int i = 0; i < 8; ++i) {
        out[i] = base + static_cast<uint32_t>(std::countr_zero(mask));
        mask &= mask - 1;
    }
    for (int done = 8; done < count; done += 8) {
        for (int i = done; i < done + 8; ++i) {
            out[i] = base + static_cast<uint32_t>(std::countr_zero(mask));
            mask &= mask - 1;
        }
    }
}

// The scan of FindSeparators over whole blocks of `Scan::kBytes` bytes, where `Scan::Bytes` gives
// the block's separators (commas and line feeds) and returns its quotes as a mask; the bytes after
// the last whole block are left to the caller. Returns false at a quote or at more than `limit`
// separators; `count` and `block` say how far it got.
template <class Scan>
inline bool ScanBlocks(const char* text, size_t size, uint32_t* ends, int limit, int& count,
                       size_t& block) {
    using Mask = typename Scan::Mask;
    constexpr int kBits = static_cast<int>(Scan::kBytes);
    for (; block + Scan::kBytes <= size; block += Scan::kBytes) {
        Mask separators;
        if (Scan::Bytes(text + block, separators) != 0) return false;
        const int inBlock = std::popcount(separators);
        // A block adds at most one separator per byte: far from the limit, the eight-at-a-time
        // writes have room.
        if (count + kBits <= limit) {
            WriteBitPositions(ends + count, static_cast<uint32_t>(block), separators, inBlock);
        } else {
            if (count + inBlock > limit) return false;
            for (Mask rest = separators; rest != 0; rest &= rest - 1)
                ends[count++] =
                    static_cast<uint32_t>(block) + static_cast<uint32_t>(std::countr_zero(rest));
            continue;
        }
        count += inBlock;
    }
    return true;
}

#ifdef __SSE2__
// Bit i set when byte i of the 32 bytes is a comma or a line feed, in `separators`, or a double
// quote, in the return value.
struct Sse2Scan {
    using Mask = uint32_t;
    static constexpr size_t kBytes = 32;
    static uint32_t Half(const char* half, uint32_t& separators) {
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(half));
        separators = static_cast<uint32_t>(
            _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(',')),
                                           _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')))));
        return static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'))));
    }
    static uint32_t Bytes(const char* block, uint32_t& separators) {
        uint32_t low, high;
        const uint32_t quotes = Half(block, low) | Half(block + 16, high);
        separators = low | high << 16;
        return quotes;
    }
};
#endif

#if defined(__x86_64__) && defined(__GNUC__)
#define TALLORY_AVX2_SCAN 1
// The same over 64 bytes with the wider registers of processors that have them.
struct Avx2Scan {
    using Mask = uint64_t;
    static constexpr size_t kBytes = 64;
    [[gnu::target("avx2")]] static uint32_t Half(const char* half, uint32_t& separators) {
        __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(half));
        separators = static_cast<uint32_t>(_mm256_movemask_epi8(
            _mm256_or_si256(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(',')),
                            _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('\n')))));
        return static_cast<uint32_t>(
            _mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('"'))));
    }
    [[gnu::target("avx2")]] static uint32_t Bytes(const char* block, uint64_t& separators) {
        uint32_t low, high;
        const uint32_t quotes = Half(block, low) | Half(block + 32, high);
        separators = low | uint64_t{high} << 32;
        return quotes;
    }
};
#endif

// The bytes after the whole blocks, one at a time; then the line's size closes the list.
int FinishSeparators(const char* text, size_t size, uint32_t* ends, int limit, int count,
                     size_t at) {
    for (; at < size; ++at) {
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

}  // namespace

namespace separator_scans {

// Each scan is one function with everything it calls inlined into it.
[[gnu::flatten]] int Portable(std::string_view line, uint32_t* ends, int limit) {
    int count = 0;
    size_t block = 0;
#ifdef __SSE2__
    if (!ScanBlocks<Sse2Scan>(line.data(), line.size(), ends, limit, count, block)) return -1;
#endif
    return FinishSeparators(line.data(), line.size(), ends, limit, count, block);
}

#ifdef TALLORY_AVX2_SCAN
[[gnu::target("avx2,bmi,bmi2,popcnt"), gnu::flatten]] int Wide(std::string_view line,
                                                               uint32_t* ends, int limit) {
    int count = 0;
    size_t block = 0;
    if (!ScanBlocks<Avx2Scan>(line.data(), line.size(), ends, limit, count, block)) return -1;
    return FinishSeparators(line.data(), line.size(), ends, limit, count, block);
}

bool WideAvailable() {
    static const bool available = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                                  __builtin_cpu_supports("bmi2") &&
                                  __builtin_cpu_supports("popcnt");
    return available;
}
#else
int Wide(std::string_view line, uint32_t* ends, int limit) {
    return Portable(line, ends, limit);
}

bool WideAvailable() {
    return false;
}
#endif

}  // namespace separator_scans

int FindSeparators(std::string_view line, uint32_t* ends, int limit) {
    return separator_scans::WideAvailable() ? separator_scans::Wide(line, ends, limit)
                                            : separator_scans::Portable(line, ends, limit);
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
