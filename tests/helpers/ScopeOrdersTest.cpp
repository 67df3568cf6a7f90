#include <algorithm>
#include <numeric>
#include <vector>

#include <drvrepo/ScopedDriver.h>
#include <drvrepo/ScopedListener.h>

#include <support/RepositoryFixture.h>

namespace
{

/// Two drivers, a listener that owns its observer and one that doesn't, all in scopes, with the
/// references on repository and drivers that their makers hold. Parts end in any order.
class Ensemble
{
public:
    static constexpr int PARTS = 6;
    static constexpr int BORROWER = 3; ///< ends before the observer that it borrowed
    static constexpr int BORROWED = 4;

    explicit Ensemble(EventLog& log)
        : repository_(new TestRepository(loop_)), one_(new TestDriver("fxs 1")),
          borrowed_(std::make_unique<RecordingObserver>(log, "borrowed"))
    {
        String error;
        first_.add(error, *repository_, *one_);
        owning_.start(error, *repository_, "owning", ListenerTerms(),
                      std::make_unique<RecordingObserver>(log, "owned"));
        borrowing_.start(error, *repository_, "borrowing", ListenerTerms().priority(1), *borrowed_);
        const TYPtr<TestDriver> two(new TestDriver("fxs 2"));
        second_.add(error, *repository_, *two);
    }
    void end(int part)
    {
        switch (part) {
        case 0:
            first_ = ScopedDriver();
            break;
        case 1:
            second_ = ScopedDriver();
            break;
        case 2:
            owning_ = ScopedListener();
            break;
        case BORROWER:
            borrowing_ = ScopedListener();
            break;
        case BORROWED:
            borrowed_.reset();
            break;
        default:
            repository_.reset();
            one_.reset();
        }
    }

private:
    TYEventLoop loop_;
    TYPtr<TestRepository> repository_;
    TYPtr<TestDriver> one_;
    std::unique_ptr<RecordingObserver> borrowed_;
    ScopedDriver first_;
    ScopedDriver second_;
    ScopedListener owning_;
    ScopedListener borrowing_;
};

/// What those who still listen hear when the parts end in that order.
std::string expected(std::vector<int> const& order)
{
    bool owning = true;
    bool borrowing = true;
    std::string text;
    for (int part : order) {
        owning = owning && part != 2;
        borrowing = borrowing && part != Ensemble::BORROWER;
        if (part > 1)
            continue;
        const std::string what = ": removed fxs " + std::to_string(part + 1) + "\n";
        text += (borrowing ? "borrowed" + what : "") + (owning ? "owned" + what : "");
    }
    return text;
}

TEST(ScopeOrders, EveryOrderOfDestruction)
{
    std::vector<int> order(Ensemble::PARTS);
    std::iota(order.begin(), order.end(), 0);
    int tried = 0;
    do {
        const auto borrower = std::find(order.begin(), order.end(), Ensemble::BORROWER);
        if (borrower > std::find(order.begin(), order.end(), Ensemble::BORROWED))
            continue;
        SCOPED_TRACE(testing::PrintToString(order));
        EventLog log;
        {
            Ensemble ensemble(log);
            EXPECT_EQ("owned: added fxs 1\nborrowed: added fxs 1\n"
                      "owned: added fxs 2\nborrowed: added fxs 2\n",
                      log.take());
            for (int part : order)
                ensemble.end(part);
            EXPECT_EQ(expected(order), log.take());
            EXPECT_EQ(0, TestRepository::living());
            EXPECT_EQ(0, TestDriver::living());
        }
        ++tried;
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_EQ(360, tried) << "half of 6!";
}

// The same from inside a call: a third listener ends them all when a third driver comes.
TEST(ScopeOrders, EveryOrderOfDestructionInsideACall)
{
    std::vector<int> order(Ensemble::PARTS);
    std::iota(order.begin(), order.end(), 0);
    do {
        const auto borrower = std::find(order.begin(), order.end(), Ensemble::BORROWER);
        if (borrower > std::find(order.begin(), order.end(), Ensemble::BORROWED))
            continue;
        SCOPED_TRACE(testing::PrintToString(order));
        EventLog log;
        {
            TYEventLoop loop;
            const TYPtr<TestRepository> repository(new TestRepository(loop));
            const TYPtr<TestDriver> trigger(new TestDriver("trigger"));
            auto borrowed = std::make_unique<RecordingObserver>(log, "borrowed");
            String error;
            auto one = std::make_unique<ScopedDriver>();
            auto two = std::make_unique<ScopedDriver>();
            auto owning = std::make_unique<ScopedListener>();
            auto borrowing = std::make_unique<ScopedListener>();
            ScopedListener trap;
            {
                const TYPtr<TestDriver> first(new TestDriver("fxs 1"));
                const TYPtr<TestDriver> second(new TestDriver("fxs 2"));
                one->add(error, *repository, *first);
                two->add(error, *repository, *second);
            }
            owning->start(error, *repository, "owning", ListenerTerms().prefix("fxs"),
                          std::make_unique<RecordingObserver>(log, "owned"));
            borrowing->start(error, *repository, "borrowing",
                             ListenerTerms().prefix("fxs").priority(1), *borrowed);
            trap.start(error, *repository, "trap", ListenerTerms().prefix("trigger"),
                       ObserverFunctions().added([&](IDriverRepository::EvDriver const&) {
                           for (int part : order) {
                               if (part == 0)
                                   one.reset();
                               else if (part == 1)
                                   two.reset();
                               else if (part == 2)
                                   owning.reset();
                               else if (part == Ensemble::BORROWER)
                                   borrowing.reset();
                               else if (part == Ensemble::BORROWED)
                                   borrowed.reset();
                               else
                                   trap.stop();
                           }
                       }));
            log.take();
            EXPECT_EQ(0, (*repository).addDriver(error, trigger.get()).code());
            EXPECT_EQ(expected(order), log.take());
            EXPECT_EQ(1, TestDriver::living());
            (*repository).removeDriver(trigger.get());
        }
        EXPECT_EQ(0, TestRepository::living());
        EXPECT_EQ(0, TestDriver::living());
    } while (std::next_permutation(order.begin(), order.end()));
}

} // namespace
