#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>

#include <memory>
#include <mutex>
#include <ostream>
#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

/// The table of all tokens' texts, in shards so that threads seldom meet.
class Tf_TokenRegistry
{
public:
    using Rep = TfToken::_Rep;

    static Tf_TokenRegistry& GetInstance()
    {
        static Tf_TokenRegistry* const registry = new Tf_TokenRegistry;
        return *registry;
    }

    /// Returns the bits of a token of the text, counted unless the text is immortal.
    uintptr_t Intern(std::string_view text, bool immortal)
    {
        if (text.empty()) {
            return 0;
        }
        const size_t hash = std::hash<std::string_view>()(text);
        Shard& shard = _ShardOf(hash);
        const std::lock_guard<std::mutex> lock(shard.mutex);
        Rep* rep = _Find(shard, text, hash);
        if (!rep) {
            rep = _Insert(shard, text, hash);
        }
        if (immortal) {
            rep->immortal.store(true, std::memory_order_relaxed);
        }
        return _Acquire(rep);
    }

    /// As Intern(), for a text that somebody interned already; 0 for others.
    uintptr_t Find(std::string_view text)
    {
        const size_t hash = std::hash<std::string_view>()(text);
        Shard& shard = _ShardOf(hash);
        const std::lock_guard<std::mutex> lock(shard.mutex);
        Rep* rep = _Find(shard, text, hash);
        return rep ? _Acquire(rep) : 0;
    }

    /// Drops a count that may be the last. Counts rise from 0 only under the lock, hence a text whose count
    /// falls to 0 under it has no token left.
    void ReleaseLast(Rep* rep)
    {
        Shard& shard = _ShardOf(rep->hash);
        std::unique_ptr<Rep> dead;
        const std::lock_guard<std::mutex> lock(shard.mutex);
        if (rep->count.fetch_sub(1, std::memory_order_acq_rel) == 1 &&
            !rep->immortal.load(std::memory_order_relaxed)) {
            _Remove(shard, rep);
            dead.reset(rep);
        }
    }

private:
    struct Shard
    {
        std::mutex mutex;
        std::vector<Rep*> buckets = std::vector<Rep*>(64, nullptr);
        size_t size = 0;
    };
    static constexpr size_t kShardBits = 7;

    Shard& _ShardOf(size_t hash) { return _shards[hash >> (8 * sizeof(hash) - kShardBits)]; }

    static Rep*& _BucketOf(Shard& shard, size_t hash)
    {
        return shard.buckets[hash & (shard.buckets.size() - 1)];
    }

    static Rep* _Find(Shard& shard, std::string_view text, size_t hash)
    {
        Rep* rep = _BucketOf(shard, hash);
        while (rep && (rep->hash != hash || rep->text != text)) {
            rep = rep->next;
        }
        return rep;
    }

    static Rep* _Insert(Shard& shard, std::string_view text, size_t hash)
    {
        if (shard.size == shard.buckets.size()) {
            _Grow(shard);
        }
        auto rep = std::make_unique<Rep>();
        rep->text = text;
        rep->hash = hash;
        rep->order = _Order(text);
        Rep*& bucket = _BucketOf(shard, hash);
        rep->next = bucket;
        bucket = rep.release();
        ++shard.size;
        return bucket;
    }

    /// Returns the first eight bytes as one number, big end first. As OpenUSD does, each counts as a signed
    /// one whose sign fills the bits above it: a text with a byte beyond ASCII there sorts behind those
    /// without.
    static uint64_t _Order(std::string_view text)
    {
        uint64_t order = 0;
        for (size_t i = 0; i != sizeof(order) && i != text.size() && text[i] != '\0'; ++i) {
            const auto byte = static_cast<uint64_t>(static_cast<signed char>(text[i]));
            order |= byte << (8 * (sizeof(order) - 1 - i));
        }
        return order;
    }

    static void _Grow(Shard& shard)
    {
        std::vector<Rep*> old(2 * shard.buckets.size(), nullptr);
        old.swap(shard.buckets);
        for (Rep* rep : old) {
            while (rep) {
                Rep* next = rep->next;
                Rep*& bucket = _BucketOf(shard, rep->hash);
                rep->next = bucket;
                bucket = rep;
                rep = next;
            }
        }
    }

    static void _Remove(Shard& shard, Rep* rep)
    {
        Rep** link = &_BucketOf(shard, rep->hash);
        while (*link != rep) {
            link = &(*link)->next;
        }
        *link = rep->next;
        --shard.size;
    }

    static uintptr_t _Acquire(Rep* rep)
    {
        const auto bits = reinterpret_cast<uintptr_t>(rep);
        if (rep->immortal.load(std::memory_order_relaxed)) {
            return bits;
        }
        rep->count.fetch_add(1, std::memory_order_relaxed);
        return bits | TfToken::_CountedBit;
    }

    Shard _shards[size_t(1) << kShardBits];
};

namespace {

std::string_view View(char const* text) { return text ? std::string_view(text) : std::string_view(); }

} // namespace

TfToken::TfToken(std::string const& text) : _bits(Tf_TokenRegistry::GetInstance().Intern(text, false)) {}
TfToken::TfToken(std::string const& text, _ImmortalTag)
    : _bits(Tf_TokenRegistry::GetInstance().Intern(text, true))
{}
TfToken::TfToken(char const* text) : _bits(Tf_TokenRegistry::GetInstance().Intern(View(text), false)) {}
TfToken::TfToken(char const* text, _ImmortalTag)
    : _bits(Tf_TokenRegistry::GetInstance().Intern(View(text), true))
{}

TfToken TfToken::Find(std::string const& text)
{
    TfToken token;
    token._bits = Tf_TokenRegistry::GetInstance().Find(text);
    return token;
}

void TfToken::_Release(_Rep* rep)
{
    uint32_t count = rep->count.load(std::memory_order_relaxed);
    while (count > 1) {
        if (rep->count.compare_exchange_weak(count, count - 1, std::memory_order_release,
                                             std::memory_order_relaxed)) {
            return;
        }
    }
    Tf_TokenRegistry::GetInstance().ReleaseLast(rep);
}

std::string const& TfToken::_GetEmptyString()
{
    static const std::string* const empty = new std::string;
    return *empty;
}

std::ostream& operator<<(std::ostream& stream, TfToken const& token) { return stream << token.GetString(); }

std::vector<TfToken> TfToTokenVector(const std::vector<std::string>& texts)
{
    return std::vector<TfToken>(texts.begin(), texts.end());
}

std::vector<std::string> TfToStringVector(const std::vector<TfToken>& tokens)
{
    return std::vector<std::string>(tokens.begin(), tokens.end());
}

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<TfToken>();
    TfType::Define<std::vector<TfToken>>().Alias(TfType::GetRoot(), "vector<TfToken>");
}

PXR_NAMESPACE_CLOSE_SCOPE
