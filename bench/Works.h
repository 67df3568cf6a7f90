#ifndef BENCH_WORKS_H
#define BENCH_WORKS_H

#include "Scene.h"

// The works that are measured, written once for all systems.

/// W1: looks a driver up by its name, takes a reference and gives it back.
template <class S> class LookUp final : public Work
{
public:
    LookUp(unsigned n, unsigned) : scene_(sceneOf<S>(n)), names_(scene_->someNames(n)) {}

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i) {
            found_ += scene_->system.lookUp(names_[next_]) ? 1 : 0;
            next_ = next_ + 1 == names_.size() ? 0 : next_ + 1;
        }
    }
    bool isRight() const override { return found_ == done_; }

private:
    const std::shared_ptr<Scene<S>> scene_;
    const std::vector<typename S::Text> names_;
    std::size_t next_ = 0;
    std::uint64_t done_ = 0;
    std::uint64_t found_ = 0;
};

/// The same by a C text, of which a text is made each time.
template <class S> class LookUpByCText final : public Work
{
public:
    LookUpByCText(unsigned n, unsigned) : scene_(sceneOf<S>(n))
    {
        for (unsigned i : load::shuffled(n))
            names_.push_back(load::name(i));
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i) {
            found_ += scene_->system.lookUp(typename S::Text(names_[next_].c_str())) ? 1 : 0;
            next_ = next_ + 1 == names_.size() ? 0 : next_ + 1;
        }
    }
    bool isRight() const override { return found_ == done_; }

private:
    const std::shared_ptr<Scene<S>> scene_;
    std::vector<std::string> names_;
    std::size_t next_ = 0;
    std::uint64_t done_ = 0;
    std::uint64_t found_ = 0;
};

/// W2, W3: adds a driver and removes it, with L listeners that all match or none of which does.
template <class S, bool MATCHING> class AddRemove final : public Work
{
public:
    AddRemove(unsigned n, unsigned l) : scene_(sceneOf<S>(n)), audience_(scene_->system, l)
    {
        for (unsigned i = 0; i < l; ++i)
            audience_.join(criteria(i));
        for (unsigned line = 0; line < 64; ++line)
            guests_.push_back(
                S::make(typename S::Text(load::nameOn(99, line).c_str()), load::E1T1));
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i) {
            typename S::Driver const& guest = guests_[next_];
            added_ += scene_->system.add(guest) ? 1 : 0;
            scene_->system.remove(guest);
            next_ = (next_ + 1) % guests_.size();
        }
    }
    bool isRight() const override
    {
        load::Told expected;
        if (MATCHING)
            expected.added = expected.removed = done_;
        return added_ == done_ && audience_.allHeard(expected);
    }

private:
    /// Half of those that don't match ask for another type, half for other names.
    static load::Criteria criteria(unsigned i)
    {
        load::Criteria criteria;
        criteria.type = MATCHING ? load::E1T1 : i % 2 == 0 ? load::FXS : load::ANY;
        criteria.prefix = MATCHING ? "e1t1 " : "fxs ";
        return criteria;
    }

    const std::shared_ptr<Scene<S>> scene_;
    Audience<S> audience_;
    std::vector<typename S::Driver> guests_;
    std::size_t next_ = 0;
    std::uint64_t done_ = 0;
    std::uint64_t added_ = 0;
};

/// W4: changes one attachment from one value to another, with L listeners that are selected by the
/// name and another attachment; each hears that the old value is gone and of the new one.
template <class S> class Change final : public Work
{
public:
    Change(unsigned n, unsigned l)
        : scene_(sceneOf<S>(n)), audience_(scene_->system, l), names_(scene_->someNames(1024))
    {
        load::Criteria criteria;
        criteria.prefix = "e1t1 ";
        criteria.key = load::ZONE;
        criteria.value = "zone-";
        for (unsigned i = 0; i < l; ++i)
            audience_.join(criteria);
    }
    ~Change() override
    {
        for (auto const& name : names_)
            scene_->system.set(name, scene_->STATE, scene_->IDLE);
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i) {
            changed_ += scene_->system.set(names_[next_], scene_->STATE,
                                           busy_ ? scene_->IDLE : scene_->BUSY)
                            ? 1
                            : 0;
            if (++next_ == names_.size()) {
                next_ = 0;
                busy_ = !busy_;
            }
        }
    }
    bool isRight() const override
    {
        load::Told expected;
        expected.set = expected.cleared = done_;
        return changed_ == done_ && audience_.allHeard(expected);
    }

private:
    const std::shared_ptr<Scene<S>> scene_;
    Audience<S> audience_;
    const std::vector<typename S::Text> names_;
    std::size_t next_ = 0;
    bool busy_ = false;
    std::uint64_t done_ = 0;
    std::uint64_t changed_ = 0;
};

/// W5: finds the drivers whose name and attachment begin as asked. Narrow: an eighth of one card,
/// N/512. Broad: an eighth of all.
template <class S, bool NARROW> class Query final : public Work
{
public:
    Query(unsigned n, unsigned) : scene_(sceneOf<S>(n)), prefix_(NARROW ? "e1t1 12 " : "e1t1 ")
    {
        const std::string card(NARROW ? "e1t1 12 " : "e1t1 ");
        for (unsigned i = 0; i < n; ++i)
            if (load::zoneOf(i) == 0 && load::name(i).compare(0, card.size(), card) == 0)
                ++expected_;
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i)
            found_ += scene_->system.query(prefix_, scene_->ZONE, scene_->zones[0], hits_);
    }
    bool isRight() const override { return expected_ > 0 && found_ == done_ * expected_; }

private:
    const std::shared_ptr<Scene<S>> scene_;
    const typename S::Text prefix_;
    typename S::Found hits_;
    std::uint64_t expected_ = 0;
    std::uint64_t done_ = 0;
    std::uint64_t found_ = 0;
};

/// W6: tells L observers, who may refuse, of new timeslots. Accepted by all; or refused by the
/// last, and told back to the others.
template <class S, bool REFUSED> class Broadcast final : public Work
{
public:
    Broadcast(unsigned, unsigned l) : told_(l)
    {
        for (unsigned i = 0; i < l; ++i)
            group_.observe(i, REFUSED && i + 1 == l, told_[i]);
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i)
            accepted_ += group_.announce() ? 1 : 0;
    }
    bool isRight() const override
    {
        if (accepted_ != (REFUSED && !told_.empty() ? 0 : done_))
            return false;
        for (std::size_t i = 0; i < told_.size(); ++i) {
            load::Told expected;
            expected.added = done_;
            expected.removed = REFUSED && i + 1 < told_.size() ? done_ : 0;
            if (!(told_[i] == expected))
                return false;
        }
        return true;
    }

private:
    std::vector<load::Told> told_;
    typename S::Group group_;
    std::uint64_t done_ = 0;
    std::uint64_t accepted_ = 0;
};

/// W7: registers a listener over N drivers that match, and removes it; with or without being told
/// the two attachments of each.
template <class S, bool SNAPSHOT> class Register final : public Work
{
public:
    Register(unsigned n, unsigned) : scene_(sceneOf<S>(n)), n_(n)
    {
        criteria_.name = "visitor";
        criteria_.type = load::E1T1;
        criteria_.prefix = "e1t1 ";
        criteria_.snapshot = SNAPSHOT;
    }

    void run(unsigned operations) override
    {
        done_ += operations;
        for (unsigned i = 0; i < operations; ++i) {
            scene_->system.listen(criteria_, told_);
            scene_->system.unlisten(criteria_.name);
        }
    }
    bool isRight() const override
    {
        load::Told expected;
        expected.added = expected.removed = done_ * n_;
        expected.set = expected.cleared = SNAPSHOT ? 2 * done_ * n_ : 0;
        return told_ == expected;
    }

private:
    const std::shared_ptr<Scene<S>> scene_;
    load::Criteria criteria_;
    load::Told told_;
    const std::uint64_t n_;
    std::uint64_t done_ = 0;
};

/// Adds drivers with their attachments to an empty registry with L listeners that match: for what
/// they take of the heap.
template <class S, bool NEW_TEXTS> class Fill final : public Work
{
public:
    Fill(unsigned n, unsigned l) : scene_(0), audience_(scene_.system, l)
    {
        load::Criteria criteria;
        criteria.prefix = "e1t1 ";
        for (unsigned i = 0; i < l; ++i)
            audience_.join(criteria);
        scene_.drivers.reserve(n);
    }

    void run(unsigned operations) override { scene_.fill(operations, NEW_TEXTS); }
    bool isRight() const override
    {
        load::Told expected;
        expected.added = scene_.size();
        expected.set = 2 * expected.added;
        return audience_.allHeard(expected);
    }

private:
    Scene<S> scene_;
    Audience<S> audience_;
};

#endif
