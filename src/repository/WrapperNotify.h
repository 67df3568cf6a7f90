#ifndef REPOSITORY_WRAPPERNOTIFY_H
#define REPOSITORY_WRAPPERNOTIFY_H

#include <drvrepo/IDriverRepositoryObserver.h>

#include "foundation/Log.h"
#include "repository/Frames.h"

// The only place where observers are called: each call tells one listener one piece of news.
//
// An occasion says why, and is asked at the last moment and again after the answer, since log
// lines, references taken and the observer itself may have changed everything. It offers
//
//   voice      the events of the walk
//   begin()    the observer is about to be called; false when the news has been overtaken
//   stands()   whether a refusal of the news still has something to refuse
//   refuse()   the observer has refused or thrown: it counts as not told, before anybody else
//              hears of that
//
// Telling is what most of the time goes into, so the compiler sees through it, and what is seldom
// needed stands in WrapperNotify.cpp.

/// What a listener can be told.
struct CDriverRepository::DriverWrapper::DriverAdded
{
    static constexpr auto COUNTER = Listener::DRIVER_ADDED;
    static constexpr auto METHOD = &IDriverRepositoryObserver::onDriverAdded;
    using Event = EvDriver;

    void log(DriverWrapper const& record, Listener const& l) const;
    Loan<Event> event(Voice& voice, DriverWrapper const& record) const
    {
        return {voice.driver, record.repository_, record.getDriver()};
    }
};

struct CDriverRepository::DriverWrapper::DriverRemoved
{
    static constexpr auto COUNTER = Listener::DRIVER_REMOVED;
    static constexpr auto METHOD = &IDriverRepositoryObserver::onDriverRemoved;
    using Event = EvDriver;

    void log(DriverWrapper const& record, Listener const& l) const;
    Loan<Event> event(Voice& voice, DriverWrapper const& record) const
    {
        return {voice.driver, record.repository_, record.getDriver()};
    }
};

struct CDriverRepository::DriverWrapper::AttachmentSet
{
    static constexpr auto COUNTER = Listener::ATTACHMENT_SET;
    static constexpr auto METHOD = &IDriverRepositoryObserver::onDriverAttachmentSet;
    using Event = EvAttachment;

    void log(DriverWrapper const& record, Listener const& l) const;
    Loan<Event> event(Voice& voice, DriverWrapper const& record) const
    {
        return {voice.attachment, record.repository_, record.getDriver(), key, value};
    }

    String const& key;
    String const& value;
};

struct CDriverRepository::DriverWrapper::AttachmentCleared
{
    static constexpr auto COUNTER = Listener::ATTACHMENT_CLEARED;
    static constexpr auto METHOD = &IDriverRepositoryObserver::onDriverAttachmentCleared;
    using Event = EvAttachment;

    void log(DriverWrapper const& record, Listener const& l) const;
    Loan<Event> event(Voice& voice, DriverWrapper const& record) const
    {
        return {voice.attachment, record.repository_, record.getDriver(), key, value};
    }

    String const& key;
    String const& value;
};

/// Tells news that may be refused, and returns the refusal if it counts.
template <class News, class Occasion>
inline XCode CDriverRepository::DriverWrapper::ask(String& error, Listener* l, News const& news,
                                                   Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return XCode();
    try {
        if (isMonitored())
            news.log(*this, *l);
        l->addCount(News::COUNTER);
        const Loan<typename News::Event> event = news.event(occasion.voice, *this);
        if (!occasion.begin())
            return XCode();
        XCode rc = l->delegate()->notifyEvent(error, News::METHOD, *event);
        if (rc.code() == 0 || !l->hasRightOfVeto() || !occasion.stands())
            return XCode();
        occasion.refuse();
        logRefusal(*l, error);
        return rc;
    } catch (...) {
        occasion.refuse();
        logRefusal(*l, error);
        throw;
    }
}

/// Tells news that cannot be refused.
template <class News, class Occasion>
inline void CDriverRepository::DriverWrapper::tell(Listener* l, News const& news,
                                                   Occasion& occasion)
{
    if (l->delegate() == nullptr)
        return;
    if (isMonitored())
        news.log(*this, *l);
    l->addCount(News::COUNTER);
    const Loan<typename News::Event> event = news.event(occasion.voice, *this);
    if (occasion.begin())
        l->delegate()->notifyEvent(News::METHOD, *event);
}

#endif
