#pragma once

/// Interned strings.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/hashset.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

struct TfTokenFastArbitraryLessThan;

/// A handle to an interned string: equality and hash are those of one address, order is that of the text.
/// A counted token's text is dropped with its last handle; an immortal one's stays until the process ends
/// and costs no counting. Thread: any; one handle is written by one thread at a time.
class TfToken
{
public:
    enum _ImmortalTag
    {
        Immortal
    };

    constexpr TfToken() noexcept = default;
    TfToken(TfToken const& rhs) noexcept : _bits(rhs._bits) { _AddRef(); }
    TfToken(TfToken&& rhs) noexcept : _bits(std::exchange(rhs._bits, 0)) {}
    TfToken& operator=(TfToken const& rhs) noexcept
    {
        TfToken(rhs).Swap(*this);
        return *this;
    }
    TfToken& operator=(TfToken&& rhs) noexcept
    {
        TfToken(std::move(rhs)).Swap(*this);
        return *this;
    }
    ~TfToken() { _RemoveRef(); }

    VESK_USD_API explicit TfToken(std::string const& text);
    VESK_USD_API TfToken(std::string const& text, _ImmortalTag);
    VESK_USD_API explicit TfToken(char const* text);
    VESK_USD_API TfToken(char const* text, _ImmortalTag);

    /// Returns the token of the text if one exists, else the empty token; interns nothing.
    VESK_USD_API static TfToken Find(std::string const& text);

    size_t Hash() const { return TfHash()(*this); }

    struct HashFunctor
    {
        size_t operator()(TfToken const& token) const { return token.Hash(); }
    };

    typedef TfHashSet<TfToken, TfToken::HashFunctor> HashSet;
    typedef std::set<TfToken, TfTokenFastArbitraryLessThan> Set;

    size_t size() const { return _bits ? _Get()->text.size() : 0; }
    char const* GetText() const { return _bits ? _Get()->text.c_str() : ""; }
    char const* data() const { return GetText(); }
    std::string const& GetString() const { return _bits ? _Get()->text : _GetEmptyString(); }
    void Swap(TfToken& other) { std::swap(_bits, other._bits); }

    bool operator==(TfToken const& o) const { return _Get() == o._Get(); }
    bool operator!=(TfToken const& o) const { return !(*this == o); }
    bool operator==(std::string const& o) const { return GetString() == o; }
    bool operator==(const char* o) const { return GetString() == o; }
    bool operator!=(std::string const& o) const { return !(*this == o); }
    bool operator!=(char const* o) const { return !(*this == o); }
    friend bool operator==(std::string const& o, TfToken const& t) { return t == o; }
    friend bool operator==(const char* o, TfToken const& t) { return t == o; }
    friend bool operator!=(std::string const& o, TfToken const& t) { return !(t == o); }
    friend bool operator!=(char const* o, TfToken const& t) { return !(t == o); }

    /// Orders by the bytes of the text.
    bool operator<(TfToken const& o) const
    {
        if (!_bits || !o._bits || *this == o) {
            return !_bits && o._bits;
        }
        const _Rep *a = _Get(), *b = o._Get();
        return a->order != b->order ? a->order < b->order : a->text < b->text;
    }
    bool operator>(TfToken const& o) const { return o < *this; }
    bool operator>=(TfToken const& o) const { return !(*this < o); }
    bool operator<=(TfToken const& o) const { return !(*this > o); }

    operator std::string const&() const { return GetString(); }

    bool IsEmpty() const { return _bits == 0; }
    /// Returns whether the text stays until the process ends; the empty token is immortal.
    bool IsImmortal() const { return !_bits || _Get()->immortal.load(std::memory_order_relaxed); }

    friend VESK_USD_API std::ostream& operator<<(std::ostream& stream, TfToken const&);

    template <class HashState>
    friend void TfHashAppend(HashState& h, TfToken const& token)
    {
        h.Append(token._Get());
    }

private:
    friend struct TfTokenFastArbitraryLessThan;
    friend class Tf_TokenRegistry;
    friend void swap(TfToken& lhs, TfToken& rhs) { lhs.Swap(rhs); }

    struct _Rep
    {
        std::string text;
        uint64_t order = 0; // the first eight bytes, big end first: settles most comparisons
        size_t hash = 0;
        _Rep* next = nullptr;
        std::atomic<uint32_t> count{0};
        std::atomic<bool> immortal{false};
    };
    static constexpr uintptr_t _CountedBit = 1;

    const _Rep* _Get() const { return reinterpret_cast<const _Rep*>(_bits & ~_CountedBit); }
    void _AddRef() const
    {
        if (_bits & _CountedBit) {
            const_cast<_Rep*>(_Get())->count.fetch_add(1, std::memory_order_relaxed);
        }
    }
    void _RemoveRef() const
    {
        if (_bits & _CountedBit) {
            _Release(const_cast<_Rep*>(_Get()));
        }
    }
    VESK_USD_API static void _Release(_Rep* rep);
    VESK_USD_API static std::string const& _GetEmptyString();

    uintptr_t _bits = 0;
};

/// Orders by address: quick, stable within one process only.
struct TfTokenFastArbitraryLessThan
{
    bool operator()(TfToken const& lhs, TfToken const& rhs) const { return lhs._Get() < rhs._Get(); }
};

typedef std::vector<TfToken> TfTokenVector;

VESK_USD_API std::vector<TfToken> TfToTokenVector(const std::vector<std::string>& texts);
VESK_USD_API std::vector<std::string> TfToStringVector(const std::vector<TfToken>& tokens);

inline size_t hash_value(const TfToken& token) { return token.Hash(); }

PXR_NAMESPACE_CLOSE_SCOPE
