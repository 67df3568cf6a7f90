#include "JsonNarrator.h"

#include "Json.h"

namespace
{
void addNews(Json& object, Notice const& notice)
{
    if (notice.ofGroup) {
        object["timeslots"] = notice.timeslots;
        object["before"] = notice.before;
        object["after"] = notice.after;
    } else if (notice.what == Notice::What::Set || notice.what == Notice::What::Cleared) {
        object["key"] = notice.key;
        object["value"] = notice.value;
    }
}
} // namespace

void JsonNarrator::command(std::string const& text)
{
    write({{"event", "command"}, {"text", text}});
}

void JsonNarrator::said(std::string const& text)
{
    write({{"event", "text"}, {"text", text}});
}

void JsonNarrator::remarked(std::string const& text)
{
    write({{"event", "remark"}, {"text", text}});
}

void JsonNarrator::result(Result const& result)
{
    write({{"event", "result"}, {"value", result.value}});
}

void JsonNarrator::told(Notice const& notice)
{
    Json object = {{"event", notice.refusal ? "refused" : word(notice.what)}};
    if (notice.refusal)
        object["what"] = word(notice.what);
    object[notice.ofGroup ? "observer" : "listener"] = notice.hearer;
    object[notice.ofGroup ? "group" : "driver"] = notice.subject;
    addNews(object, notice);
    if (notice.refusal) {
        object["reason"] = notice.refusal->reason;
        object["counts"] = notice.refusal->counts;
    }
    write(object);
}

void JsonNarrator::logged(int level, std::string const& text)
{
    write({{"event", "log"}, {"level", level}, {"text", text}});
}

void JsonNarrator::failed(std::string const& text)
{
    write({{"event", "failed"}, {"text", text}});
}

void JsonNarrator::complained(Complaint const& complaint)
{
    Json object = {{"event", complaint.isWarning ? "warning" : "error"},
                   {"place", complaint.place},
                   {"text", complaint.text}};
    write(object);
    out_.flush();
    if (!complaint.place.empty())
        err_ << complaint.place << ": ";
    err_ << (complaint.isWarning ? "warning: " : "") << complaint.text << '\n';
    err_.flush();
}

void JsonNarrator::write(nlohmann::ordered_json const& object)
{
    out_ << jsonText(object, -1) << '\n';
}
