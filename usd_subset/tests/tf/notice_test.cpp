#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/registryManager.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct BaseNotice : TfNotice
{};
struct DerivedNotice : BaseNotice
{};
struct OtherNotice : TfNotice
{};

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<BaseNotice, TfType::Bases<TfNotice>>();
    TfType::Define<DerivedNotice, TfType::Bases<BaseNotice>>();
    TfType::Define<OtherNotice, TfType::Bases<TfNotice>>();
}

struct Sender : TfRefBase, TfWeakBase
{};
using SenderPtr = TfWeakPtr<Sender>;
using SenderRefPtr = TfRefPtr<Sender>;

/// Notes what it hears in a list that several listeners may share.
struct Listener : TfWeakBase
{
    explicit Listener(std::vector<std::string>* log_, std::string name_ = "")
        : log(log_), name(std::move(name_))
    {}
    void onBase(const BaseNotice&) { log->push_back(name + "base"); }
    void onDerived(const DerivedNotice&) { log->push_back(name + "derived"); }
    void onDerivedConst(const DerivedNotice&) const { log->push_back(name + "const"); }
    void onSender(const BaseNotice&, const SenderPtr& from) { sender = from; }
    void onRevoking(const BaseNotice&)
    {
        log->push_back(name + "revoking");
        TfNotice::Revoke(&keys);
    }
    void onSending(const OtherNotice&)
    {
        log->push_back(name + "sending");
        BaseNotice().Send();
    }
    void onRegistering(const BaseNotice&)
    {
        keys.push_back(TfNotice::Register(TfCreateWeakPtr(this), &Listener::onBase));
    }

    std::vector<std::string>* log;
    std::string name;
    SenderPtr sender;
    TfNotice::Keys keys;
};

using Log = std::vector<std::string>;

TEST(Notice, ReachesWhoListensToItsType)
{
    Log log;
    Listener listener(&log);
    TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onBase);
    EXPECT_EQ(BaseNotice().Send(), 1u);
    EXPECT_EQ(OtherNotice().Send(), 0u);
    EXPECT_EQ(log, Log{"base"});
    TfNotice::Revoke(key);
}

TEST(Notice, ReachesListenersOfItsBasesAfterItsOwn)
{
    Log log;
    Listener listener(&log);
    TfNotice::Keys keys{TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onBase),
                        TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onDerived)};
    EXPECT_EQ(DerivedNotice().Send(), 2u);
    EXPECT_EQ(log, (Log{"derived", "base"}));
    TfNotice::Revoke(&keys);
    EXPECT_TRUE(keys.empty());
}

TEST(Notice, ReachesConstMethods)
{
    Log log;
    Listener listener(&log);
    TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onDerivedConst);
    DerivedNotice().Send();
    EXPECT_EQ(log, Log{"const"});
    TfNotice::Revoke(key);
}

TEST(Notice, OfOneSenderReachesItsListenersOnly)
{
    Log log;
    Listener mine(&log, "mine "), others(&log, "others ");
    const SenderRefPtr a = TfCreateRefPtr(new Sender), b = TfCreateRefPtr(new Sender);
    TfNotice::Keys keys{TfNotice::Register(TfCreateWeakPtr(&mine), &Listener::onBase, SenderPtr(a)),
                        TfNotice::Register(TfCreateWeakPtr(&others), &Listener::onBase, SenderPtr(b))};
    EXPECT_EQ(BaseNotice().Send(SenderPtr(a)), 1u);
    EXPECT_EQ(log, Log{"mine base"});
    TfNotice::Revoke(&keys);
}

TEST(Notice, OfASenderReachesItsListenersBeforeThoseOfAll)
{
    Log log;
    Listener all(&log, "all "), mine(&log, "mine ");
    const SenderRefPtr sender = TfCreateRefPtr(new Sender);
    TfNotice::Keys keys{TfNotice::Register(TfCreateWeakPtr(&mine), &Listener::onBase, sender),
                        TfNotice::Register(TfCreateWeakPtr(&all), &Listener::onBase)};
    EXPECT_EQ(BaseNotice().Send(sender), 2u);
    EXPECT_EQ(log, (Log{"mine base", "all base"}));
    TfNotice::Revoke(&keys);
}

TEST(Notice, TellsWhoSentIt)
{
    Log log;
    Listener listener(&log);
    const SenderRefPtr sender = TfCreateRefPtr(new Sender);
    TfNotice::Key key =
        TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onSender, SenderPtr(sender));
    BaseNotice().Send(sender);
    EXPECT_EQ(listener.sender, sender);
    TfNotice::Revoke(key);
}

TEST(Notice, ReachesTheLastToRegisterFirst)
{
    Log log;
    Listener first(&log, "first "), second(&log, "second ");
    TfNotice::Keys keys{TfNotice::Register(TfCreateWeakPtr(&first), &Listener::onBase),
                        TfNotice::Register(TfCreateWeakPtr(&second), &Listener::onBase)};
    BaseNotice().Send();
    EXPECT_EQ(log, (Log{"second base", "first base"}));
    TfNotice::Revoke(&keys);
}

TEST(Notice, IsNotDeliveredAfterRevoking)
{
    Log log;
    Listener listener(&log);
    TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onBase);
    EXPECT_TRUE(key.IsValid());
    EXPECT_TRUE(TfNotice::Revoke(key));
    EXPECT_FALSE(key.IsValid());
    EXPECT_FALSE(TfNotice::Revoke(key));
    EXPECT_EQ(BaseNotice().Send(), 0u);
}

TEST(Notice, IsNotDeliveredToWhomAnEarlierListenerRevoked)
{
    Log log;
    Listener victim(&log, "victim "), revoker(&log, "revoker ");
    revoker.keys.push_back(TfNotice::Register(TfCreateWeakPtr(&victim), &Listener::onBase));
    TfNotice::Key own = TfNotice::Register(TfCreateWeakPtr(&revoker), &Listener::onRevoking);
    EXPECT_EQ(BaseNotice().Send(), 1u);
    EXPECT_EQ(log, Log{"revoker revoking"});
    TfNotice::Revoke(own);
}

TEST(Notice, LetsAListenerRevokeItself)
{
    Log log;
    Listener listener(&log);
    listener.keys.push_back(TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onRevoking));
    EXPECT_EQ(BaseNotice().Send(), 1u);
    EXPECT_EQ(BaseNotice().Send(), 0u);
    EXPECT_EQ(log, Log{"revoking"});
}

TEST(Notice, DoesNotReachAListenerThatIsGone)
{
    Log log;
    auto listener = std::make_unique<Listener>(&log);
    const TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(listener.get()), &Listener::onBase);
    listener.reset();
    EXPECT_EQ(BaseNotice().Send(), 0u);
    EXPECT_FALSE(key.IsValid());
}

TEST(Notice, CanBeSentFromInsideAListener)
{
    Log log;
    Listener listener(&log);
    TfNotice::Keys keys{TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onSending),
                        TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onBase)};
    OtherNotice().Send();
    EXPECT_EQ(log, (Log{"sending", "base"}));
    TfNotice::Revoke(&keys);
}

TEST(Notice, ReachesWhoRegistersDuringDeliveryNextTimeOnly)
{
    Log log;
    Listener listener(&log);
    TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onRegistering);
    EXPECT_EQ(BaseNotice().Send(), 1u);
    EXPECT_EQ(BaseNotice().Send(), 2u);
    EXPECT_EQ(log, Log{"base"});
    TfNotice::Revoke(key);
    TfNotice::Revoke(&listener.keys);
}

TEST(Notice, ReachesNobodyWhileItsThreadBlocksNotices)
{
    Log log;
    Listener listener(&log);
    TfNotice::Key key = TfNotice::Register(TfCreateWeakPtr(&listener), &Listener::onBase);
    {
        const TfNotice::Block block;
        EXPECT_EQ(BaseNotice().Send(), 0u);
    }
    EXPECT_EQ(BaseNotice().Send(), 1u);
    TfNotice::Revoke(key);
}

struct UnknownNotice : TfNotice
{};

TEST(NoticeDeathTest, WithoutATypeEndsTheProcess)
{
    EXPECT_DEATH(UnknownNotice().Send(), "UnknownNotice undefined in the TfType system");
}

} // namespace

PXR_NAMESPACE_CLOSE_SCOPE
