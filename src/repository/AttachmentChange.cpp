#include <new>

#include "foundation/Texts.h"
#include "foundation/Undo.h"
#include "repository/Frames.h"

using Record = CDriverRepository::DriverWrapper;

// One change of an attachment, from the old value over none to the new one.

Record::Change::Change(DriverWrapper& record, String const& key, String const& value)
    : record_(record), key_(key), value_(value), outer_(record.changes_)
{
    for (Change* change = outer_; change != nullptr; change = change->outer_)
        if (change->key_ != key_)
            change->mixed_ = true;
    record_.changes_ = this;
}

XCode Record::Change::run(String& error)
{
    XCode rc;
    inTurn([&] { rc = carryOut(error); }, [&] { end(); });
    if (rc.code() == 0)
        error = String::EMPTY();
    return rc;
}

XCode Record::Change::carryOut(String& error)
{
    Setting const* heardIn = nullptr;
    for (Change* other = outer_; other != nullptr; other = other->outer_) {
        if (other->key_ != key_)
            continue;
        if (other->isBringing(value_))
            return XCode();
        if (!other->replaced_)
            heardIn = other->giveWay();
        other->finishClearing();
    }
    if (replaced_ || record_.gone_) // from inside what was just finished
        return XCode();
    const String old(record_.getAttachment(key_));
    if (value_ == old)
        return XCode();
    if (!old.isEmpty())
        clear(old, heardIn);
    if (replaced_ || record_.gone_ || value_.isEmpty())
        return XCode();
    return set(error);
}

/// Whether that value is just on its way to the listeners.
bool Record::Change::isBringing(String const& value) const
{
    return isSetting() && !replaced_ && record_.getAttachment(key_) == value;
}

/// Tells and stores nothing more from then on. Returns the walk that knows who has heard the new
/// value; null when nobody or everybody has.
Record::Setting const* Record::Change::giveWay()
{
    replaced_ = true;
    return isSetting() ? setting_ : nullptr;
}

/// Finishes telling that a value is gone, if that is under way.
void Record::Change::finishClearing()
{
    if (clearing_ != nullptr)
        throughout([this] { clearing_->run(); });
}

void Record::Change::clear(String const& old, Setting const* heardIn)
{
    record_.store(key_, String::EMPTY());
    const bool isRollback = false;
    Clearing walk(record_, key_, old, heardIn, isRollback);
    clearing_ = &walk;
    inTurn([&] { throughout([&] { walk.run(); }); }, [&] { clearing_ = nullptr; });
}

XCode Record::Change::set(String& error)
{
    try {
        record_.store(key_, value_);
    } catch (std::bad_alloc const&) {
        return XCode::OUT_OF_MEMORY(error);
    }
    coming_ = true;
    Setting walk(*this);
    setting_ = &walk;
    return orUndo(
        [&] {
            XCode rc = walk.run(error);
            if (rc.code() == 0)
                setting_ = nullptr;
            return rc;
        },
        [&] { inTurn([&] { rollBack(walk); }, [&] { setting_ = nullptr; }); });
}

/// Leaves the key cleared and tells those who heard the value that it is gone.
void Record::Change::rollBack(Setting& walk)
{
    if (replaced_ || record_.gone_)
        return;
    record_.store(key_, String::EMPTY());
    const bool isRollback = true;
    Clearing back(record_, key_, value_, &walk, isRollback);
    clearing_ = &back;
    inTurn([&] { throughout([&] { back.run(); }); }, [&] { clearing_ = nullptr; });
}

/// Changes of other keys may have met listeners that this one had not told yet, or had told too
/// early; the outermost change sets that right.
void Record::Change::end()
{
    record_.changes_ = outer_;
    if (mixed_ && outer_ == nullptr && !record_.gone_)
        record_.rematch();
}
