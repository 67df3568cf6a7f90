#include "Notice.h"

namespace
{
bool isOfAttachment(Notice const& notice)
{
    return notice.what == Notice::What::Set || notice.what == Notice::What::Cleared;
}

/// What was refused, behind the word "refused".
std::string refusedText(Notice const& notice)
{
    if (notice.ofGroup)
        return " " + orNone(notice.timeslots);
    return isOfAttachment(notice) ? " " + notice.key + "=" + notice.value : "";
}
} // namespace

std::string orNone(std::string const& timeslots)
{
    return timeslots.empty() ? "none" : timeslots;
}

std::string word(Notice::What what)
{
    switch (what) {
    case Notice::What::Added:
        return "added";
    case Notice::What::Removed:
        return "removed";
    case Notice::What::Set:
        return "set";
    case Notice::What::Cleared:
        break;
    }
    return "cleared";
}

std::string newsText(Notice const& notice)
{
    std::string const text = word(notice.what);
    if (notice.ofGroup)
        return text + " " + orNone(notice.timeslots) + " (" + orNone(notice.before) + " -> " +
               orNone(notice.after) + ")";
    return isOfAttachment(notice) ? text + " " + notice.key + "=" + notice.value : text;
}

std::string noticeText(Notice const& notice)
{
    std::string const about = notice.subject + ": ";
    if (!notice.refusal)
        return about + newsText(notice);
    return about + "refused" + refusedText(notice) + " " + refusalText(*notice.refusal);
}

std::string refusalText(Refusal const& refusal)
{
    return "(\"" + refusal.reason + "\")" + (refusal.counts ? "" : ", without right of veto");
}
