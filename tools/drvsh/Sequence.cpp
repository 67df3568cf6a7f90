#include "Sequence.h"

namespace
{
/// Whether `back` takes back what `done` brought.
bool undoes(Notice const& back, Notice const& done)
{
    if (back.hearer != done.hearer || back.subject != done.subject || done.refusal)
        return false;
    if (done.what == Notice::What::Added)
        return back.what == Notice::What::Removed && back.timeslots == done.timeslots;
    return done.what == Notice::What::Set && back.what == Notice::What::Cleared &&
           back.key == done.key && back.value == done.value;
}
} // namespace

std::vector<bool> rollback(std::vector<Notice> const& notices)
{
    std::vector<bool> back(notices.size(), false);
    bool refused = false;
    for (std::size_t i = 0; i < notices.size(); ++i) {
        refused = refused || (notices[i].refusal && notices[i].refusal->counts);
        for (std::size_t j = 0; refused && j < i; ++j)
            back[i] = back[i] || undoes(notices[i], notices[j]);
    }
    return back;
}

void Sequence::came(Hearer const& hearer)
{
    hearers_.push_back(hearer);
}

void Sequence::command(std::string const& text)
{
    command_ = text;
    kept_ = false;
    if (showCommands_)
        step();
}

void Sequence::said(std::string const& text)
{
    if (kept_ && steps_.back().notices.empty() && !steps_.back().failure) {
        // The command that says it is no step of its own.
        caption_ = steps_.back().caption;
        steps_.pop_back();
        kept_ = false;
    }
    if (!saying_)
        caption_.clear();
    if (!text.empty())
        caption_ += (caption_.empty() ? "" : " ") + text;
    saying_ = !text.empty();
}

void Sequence::result(Result const&)
{
    // What was said before it was about it.
    caption_.clear();
    saying_ = false;
}

void Sequence::told(Notice const& notice)
{
    step().notices.push_back(notice);
}

void Sequence::failed(std::string const& text)
{
    step().failure = text;
}

void Sequence::complained(Complaint const& complaint)
{
    if (complaint.isWarning || command_.empty())
        return;
    std::optional<std::string>& failure = step().failure;
    failure = failure ? *failure + "; " + complaint.text : complaint.text;
}

SequenceStep& Sequence::step()
{
    if (!kept_) {
        steps_.push_back({caption_, command_, {}, std::nullopt});
        caption_.clear();
        kept_ = true;
    }
    return steps_.back();
}
