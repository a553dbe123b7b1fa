#pragma once

/// Notices: messages from one object to whoever listens.

#include <pxr/base/tf/anyWeakPtr.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class TfNotice;

/// One registration: who listens to which notice of which sender.
struct Tf_NoticeListener
{
    typedef std::function<bool(const TfNotice&, const TfType&, TfWeakBase*, const void*,
                               const std::type_info&)>
        Invoke;

    TfType noticeType;
    bool hasSender = false;
    TfAnyWeakPtr sender;
    Invoke invoke; // false when the listener is gone
    std::atomic<bool> active{true};
};

/// Base of all notices. A notice class derives from TfNotice or another notice and is defined in TfType with
/// its base. Listeners of a base get notices of derived classes too.
///
/// Register a member function with a weak pointer to its object:
///     TfNotice::Register(TfCreateWeakPtr(this), &Viewer::_OnObjectsChanged, stage);
/// Delivery happens inside Send(), on its thread, with no lock held: to the listeners of the notice's own
/// type first, then of its bases; for each type to those of the sender first. A listener may revoke itself or
/// others, register, and send; listeners whose object is gone are dropped. Thread: any.
class VESK_USD_API TfNotice
{
public:
    TfNotice() = default;
    TfNotice(const TfNotice&) = default;
    TfNotice& operator=(const TfNotice&) = default;
    virtual ~TfNotice();

    /// Stands for a registration, to be revoked by.
    class Key
    {
    public:
        bool IsValid() const
        {
            const std::shared_ptr<Tf_NoticeListener> listener = _listener.lock();
            return listener && listener->active.load(std::memory_order_acquire);
        }
        operator bool() const { return IsValid(); }

    private:
        friend class TfNotice;
        std::weak_ptr<Tf_NoticeListener> _listener;
    };
    typedef std::vector<Key> Keys;

    /// \name Registration of `void method(const Notice&)`, for every sender
    /// @{
    template <class LPtr, class L, class N>
    static Key Register(LPtr const& listener, void (L::*method)(const N&))
    {
        return _RegisterMethod<N>(listener, method, nullptr);
    }
    template <class LPtr, class L, class N>
    static Key Register(LPtr const& listener, void (L::*method)(const N&) const)
    {
        return _RegisterMethod<N>(listener, method, nullptr);
    }
    /// @}

    /// \name Registration for one sender, of `void method(const Notice&)` or
    /// `void method(const Notice&, const SenderPtr&)`
    /// @{
    template <class LPtr, class L, class N, class SenderPtr>
    static Key Register(LPtr const& listener, void (L::*method)(const N&), SenderPtr const& sender)
    {
        const TfAnyWeakPtr any = _AnySender(sender);
        return _RegisterMethod<N>(listener, method, &any);
    }
    template <class LPtr, class L, class N, class SenderPtr>
    static Key Register(LPtr const& listener, void (L::*method)(const N&) const, SenderPtr const& sender)
    {
        const TfAnyWeakPtr any = _AnySender(sender);
        return _RegisterMethod<N>(listener, method, &any);
    }
    template <class LPtr, class L, class N, class SPtr, class SenderPtr>
    static Key Register(LPtr const& listener, void (L::*method)(const N&, SPtr const&),
                        SenderPtr const& sender)
    {
        return _RegisterWithSender<N, SPtr>(listener, method, sender);
    }
    template <class LPtr, class L, class N, class SPtr, class SenderPtr>
    static Key Register(LPtr const& listener, void (L::*method)(const N&, SPtr const&) const,
                        SenderPtr const& sender)
    {
        return _RegisterWithSender<N, SPtr>(listener, method, sender);
    }
    /// @}

    /// Registers a method that takes whatever there is to know, for a type given at run time; a null sender
    /// means every sender.
    template <class LPtr, class L>
    static Key Register(LPtr const& listener,
                        void (L::*method)(const TfNotice&, const TfType&, TfWeakBase*, const void*,
                                          const std::type_info&),
                        const TfType& noticeType, const TfAnyWeakPtr& sender)
    {
        return _Register(noticeType, sender ? &sender : nullptr,
                         [listener, method](const TfNotice& notice, const TfType& type, TfWeakBase* from,
                                            const void* fromId, const std::type_info& fromType) {
                             auto* object = get_pointer(listener);
                             if (object) {
                                 (object->*method)(notice, type, from, fromId, fromType);
                             }
                             return object != nullptr;
                         });
    }

    /// Ends a registration: what is not yet being delivered will not be. Returns false when it had ended.
    static bool Revoke(Key& key);
    /// Ends them all and clears the list.
    static void Revoke(Keys* keys);

    /// Sends to those who listen to every sender; returns how many got it.
    size_t Send() const;
    /// Sends in the name of a sender, a weak or counted pointer.
    template <typename SenderPtr>
    size_t Send(SenderPtr const& sender) const
    {
        const TfAnyWeakPtr any = _AnySender(sender);
        return SendWithWeakBase(any.GetWeakBase(), any.GetUniqueIdentifier(), any.GetTypeInfo());
    }
    size_t SendWithWeakBase(const TfWeakBase* sender, const void* senderUniqueId,
                            const std::type_info& senderType) const;

    /// While it lives, notices that its thread sends go to nobody.
    class VESK_USD_API Block
    {
    public:
        Block();
        ~Block();
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
    };

private:
    template <class T>
    static TfAnyWeakPtr _AnySender(TfWeakPtr<T> const& sender)
    {
        return TfAnyWeakPtr(sender);
    }
    template <class T>
    static TfAnyWeakPtr _AnySender(TfRefPtr<T> const& sender)
    {
        return TfAnyWeakPtr(TfWeakPtr<T>(sender));
    }
    template <class T>
    static TfAnyWeakPtr _AnySender(T* sender)
    {
        return TfAnyWeakPtr(TfWeakPtr<T>(sender));
    }

    template <class N, class LPtr, class Method>
    static Key _RegisterMethod(LPtr const& listener, Method method, const TfAnyWeakPtr* sender)
    {
        return _Register(_TypeOf(typeid(N)), sender,
                         [listener, method](const TfNotice& notice, const TfType&, TfWeakBase*, const void*,
                                            const std::type_info&) {
                             auto* object = get_pointer(listener);
                             if (object) {
                                 (object->*method)(static_cast<const N&>(notice));
                             }
                             return object != nullptr;
                         });
    }
    template <class N, class SPtr, class LPtr, class Method, class SenderPtr>
    static Key _RegisterWithSender(LPtr const& listener, Method method, SenderPtr const& sender)
    {
        const TfAnyWeakPtr any = _AnySender(sender);
        return _Register(_TypeOf(typeid(N)), &any,
                         [listener, method](const TfNotice& notice, const TfType&, TfWeakBase* from,
                                            const void*, const std::type_info&) {
                             auto* object = get_pointer(listener);
                             if (object) {
                                 (object->*method)(static_cast<const N&>(notice),
                                                   SPtr(static_cast<typename SPtr::DataType*>(from)));
                             }
                             return object != nullptr;
                         });
    }

    /// Returns the registered type; a fatal error for a notice that TfType does not know.
    static TfType _TypeOf(const std::type_info& type);
    static Key _Register(const TfType& noticeType, const TfAnyWeakPtr* sender,
                         Tf_NoticeListener::Invoke invoke);
};

PXR_NAMESPACE_CLOSE_SCOPE
