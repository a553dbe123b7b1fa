#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/api.h>

#include <bitset>

PXR_NAMESPACE_OPEN_SCOPE

class SdfPath;

/// What is known of a prim without looking into its opinions.
enum Usd_PrimFlags
{
    Usd_PrimActiveFlag,
    Usd_PrimLoadedFlag,
    Usd_PrimModelFlag,
    Usd_PrimGroupFlag,
    Usd_PrimComponentFlag,
    Usd_PrimAbstractFlag,
    Usd_PrimDefinedFlag,
    Usd_PrimHasDefiningSpecifierFlag,
    Usd_PrimInstanceFlag,
    Usd_PrimHasPayloadFlag,
    Usd_PrimClipsFlag,
    Usd_PrimDeadFlag,
    Usd_PrimPrototypeFlag,
    Usd_PrimInstanceProxyFlag,
    Usd_PrimPseudoRootFlag,
    Usd_PrimNumFlags
};

typedef std::bitset<Usd_PrimNumFlags> Usd_PrimFlagBits;

/// One flag, plain or negated.
struct Usd_Term
{
    Usd_Term(Usd_PrimFlags which) : flag(which), negated(false) {}
    Usd_Term(Usd_PrimFlags which, bool isNegated) : flag(which), negated(isNegated) {}
    Usd_Term operator!() const { return Usd_Term(flag, !negated); }
    bool operator==(Usd_Term other) const { return flag == other.flag && negated == other.negated; }
    bool operator!=(Usd_Term other) const { return !(*this == other); }

    Usd_PrimFlags flag;
    bool negated;
};

inline Usd_Term operator!(Usd_PrimFlags flag) { return Usd_Term(flag, true); }

/// A test of prim flags: all flags in a mask have given values, or the negation of that.
class Usd_PrimFlagsPredicate
{
public:
    typedef bool result_type;

    Usd_PrimFlagsPredicate() = default;
    Usd_PrimFlagsPredicate(Usd_PrimFlags flag) : Usd_PrimFlagsPredicate(Usd_Term(flag)) {}
    Usd_PrimFlagsPredicate(Usd_Term term) { _Require(term.flag, !term.negated); }

    static Usd_PrimFlagsPredicate Tautology() { return Usd_PrimFlagsPredicate(); }
    static Usd_PrimFlagsPredicate Contradiction() { return Usd_PrimFlagsPredicate()._Negate(); }

    /// Whether a traversal with this predicate steps into instances, showing what is inside as proxies.
    Usd_PrimFlagsPredicate& TraverseInstanceProxies(bool traverse)
    {
        _mask[Usd_PrimInstanceProxyFlag] = !traverse;
        _values[Usd_PrimInstanceProxyFlag] = traverse;
        return *this;
    }
    bool IncludeInstanceProxiesInTraversal() const
    {
        return !_mask[Usd_PrimInstanceProxyFlag] && _values[Usd_PrimInstanceProxyFlag];
    }

    /// Tests a prim; an invalid prim is an error and fails the test.
    VESK_USD_API bool operator()(const class UsdPrim& prim) const;

protected:
    bool _IsTautology() const { return *this == Tautology(); }
    bool _IsContradiction() const { return *this == Contradiction(); }
    Usd_PrimFlagsPredicate& _Negate()
    {
        _negate = !_negate;
        return *this;
    }
    Usd_PrimFlagsPredicate _GetNegated() const { return Usd_PrimFlagsPredicate(*this)._Negate(); }
    void _Require(Usd_PrimFlags flag, bool value)
    {
        _mask[flag] = true;
        _values[flag] = value;
    }

    Usd_PrimFlagBits _mask;
    Usd_PrimFlagBits _values;

private:
    friend class Usd_PrimCursor;

    bool _Eval(Usd_PrimFlagBits flags, bool isInstanceProxy) const
    {
        flags.set(Usd_PrimInstanceProxyFlag, isInstanceProxy);
        return ((flags & _mask) == (_values & _mask)) != _negate;
    }

    friend bool operator==(const Usd_PrimFlagsPredicate& lhs, const Usd_PrimFlagsPredicate& rhs)
    {
        return lhs._mask == rhs._mask && lhs._values == rhs._values && lhs._negate == rhs._negate;
    }
    friend bool operator!=(const Usd_PrimFlagsPredicate& lhs, const Usd_PrimFlagsPredicate& rhs)
    {
        return !(lhs == rhs);
    }
    friend size_t hash_value(const Usd_PrimFlagsPredicate& p)
    {
        return TfHash::Combine(p._mask.to_ulong(), p._values.to_ulong(), p._negate);
    }

    bool _negate = false;
};

/// Flags that must all hold.
class Usd_PrimFlagsConjunction : public Usd_PrimFlagsPredicate
{
public:
    Usd_PrimFlagsConjunction() = default;
    explicit Usd_PrimFlagsConjunction(Usd_Term term) { *this &= term; }

    Usd_PrimFlagsConjunction& operator&=(Usd_Term term)
    {
        if (_IsContradiction()) {
            return *this;
        }
        if (_mask[term.flag] && _values[term.flag] == term.negated) {
            static_cast<Usd_PrimFlagsPredicate&>(*this) = Contradiction();
        } else {
            _Require(term.flag, !term.negated);
        }
        return *this;
    }
    VESK_USD_API class Usd_PrimFlagsDisjunction operator!() const;

private:
    friend class Usd_PrimFlagsDisjunction;
    Usd_PrimFlagsConjunction(const Usd_PrimFlagsPredicate& base) : Usd_PrimFlagsPredicate(base) {}
};

inline Usd_PrimFlagsConjunction operator&&(const Usd_PrimFlagsConjunction& conjunction, Usd_Term rhs)
{
    return Usd_PrimFlagsConjunction(conjunction) &= rhs;
}
inline Usd_PrimFlagsConjunction operator&&(Usd_Term lhs, const Usd_PrimFlagsConjunction& conjunction)
{
    return Usd_PrimFlagsConjunction(conjunction) &= lhs;
}
inline Usd_PrimFlagsConjunction operator&&(Usd_Term lhs, Usd_Term rhs)
{
    return Usd_PrimFlagsConjunction(lhs) &= rhs;
}
inline Usd_PrimFlagsConjunction operator&&(Usd_PrimFlags lhs, Usd_PrimFlags rhs)
{
    return Usd_Term(lhs) && Usd_Term(rhs);
}

/// Flags of which one must hold, kept as the negation of a conjunction.
class Usd_PrimFlagsDisjunction : public Usd_PrimFlagsPredicate
{
public:
    Usd_PrimFlagsDisjunction() { _Negate(); }
    explicit Usd_PrimFlagsDisjunction(Usd_Term term) : Usd_PrimFlagsDisjunction() { *this |= term; }

    Usd_PrimFlagsDisjunction& operator|=(Usd_Term term)
    {
        if (_IsTautology()) {
            return *this;
        }
        if (_mask[term.flag] && _values[term.flag] != term.negated) {
            static_cast<Usd_PrimFlagsPredicate&>(*this) = Tautology();
        } else {
            _Require(term.flag, term.negated);
        }
        return *this;
    }
    VESK_USD_API class Usd_PrimFlagsConjunction operator!() const;

private:
    friend class Usd_PrimFlagsConjunction;
    Usd_PrimFlagsDisjunction(const Usd_PrimFlagsPredicate& base) : Usd_PrimFlagsPredicate(base) {}
};

inline Usd_PrimFlagsDisjunction operator||(const Usd_PrimFlagsDisjunction& disjunction, Usd_Term rhs)
{
    return Usd_PrimFlagsDisjunction(disjunction) |= rhs;
}
inline Usd_PrimFlagsDisjunction operator||(Usd_Term lhs, const Usd_PrimFlagsDisjunction& disjunction)
{
    return Usd_PrimFlagsDisjunction(disjunction) |= lhs;
}
inline Usd_PrimFlagsDisjunction operator||(Usd_Term lhs, Usd_Term rhs)
{
    return Usd_PrimFlagsDisjunction(lhs) |= rhs;
}
inline Usd_PrimFlagsDisjunction operator||(Usd_PrimFlags lhs, Usd_PrimFlags rhs)
{
    return Usd_Term(lhs) || Usd_Term(rhs);
}

static const Usd_PrimFlags UsdPrimIsActive = Usd_PrimActiveFlag;
static const Usd_PrimFlags UsdPrimIsLoaded = Usd_PrimLoadedFlag;
static const Usd_PrimFlags UsdPrimIsModel = Usd_PrimModelFlag;
static const Usd_PrimFlags UsdPrimIsGroup = Usd_PrimGroupFlag;
static const Usd_PrimFlags UsdPrimIsAbstract = Usd_PrimAbstractFlag;
static const Usd_PrimFlags UsdPrimIsDefined = Usd_PrimDefinedFlag;
static const Usd_PrimFlags UsdPrimIsInstance = Usd_PrimInstanceFlag;
static const Usd_PrimFlags UsdPrimHasDefiningSpecifier = Usd_PrimHasDefiningSpecifierFlag;

/// Active, defined, loaded and not abstract: what a traversal visits unless told otherwise.
extern VESK_USD_API const Usd_PrimFlagsConjunction UsdPrimDefaultPredicate;

/// Every prim.
extern VESK_USD_API const Usd_PrimFlagsPredicate UsdPrimAllPrimsPredicate;

/// The predicate, stepping into instances.
inline Usd_PrimFlagsPredicate UsdTraverseInstanceProxies(Usd_PrimFlagsPredicate predicate)
{
    return predicate.TraverseInstanceProxies(true);
}

/// The default predicate, stepping into instances.
inline Usd_PrimFlagsPredicate UsdTraverseInstanceProxies()
{
    return UsdTraverseInstanceProxies(UsdPrimDefaultPredicate);
}

PXR_NAMESPACE_CLOSE_SCOPE
