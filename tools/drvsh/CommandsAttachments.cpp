#include "InfoTree.h"
#include "Json.h"
#include "Shell.h"
#include "Text.h"

namespace
{
class Attach : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.required("KEY", key_, "The attachment's key");
        arguments.required("VALUE", value_, "Its value; the empty text clears it");
    }
    void run(Shell& shell) override { shell.attach(driver_, key_, value_); }

private:
    std::string driver_;
    std::string key_;
    std::string value_;
};

class Detach : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.required("KEY", key_, "The attachment's key");
    }
    void run(Shell& shell) override { shell.attach(driver_, key_, ""); }

private:
    std::string driver_;
    std::string key_;
};

class Get : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.required("KEY", key_, "The attachment's key");
    }
    void run(Shell& shell) override
    {
        shell.driver(driver_);
        String value;
        shell.repository()->getDriverAttachment(toString(driver_), toString(key_), value);
        shell.output().line(toStd(value));
    }

private:
    std::string driver_;
    std::string key_;
};

class Attachments : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.required("DRIVER", driver_, "The driver's name");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        shell.driver(driver_);
        std::string text;
        Json value = Json::object();
        for (auto const& attachment : attachmentsOf(shell, driver_)) {
            text += attachment.first + "=" + attachment.second + "\n";
            value[attachment.first] = attachment.second;
        }
        shell.output().result(text, value, json_);
    }

private:
    std::string driver_;
    bool json_ = false;
};
} // namespace

void addAttachmentCommands(CommandEntries& entries)
{
    entries.push_back(
        commandEntry<Attach>("attach", "Set an attachment of a driver", "attach 'fxs 1' room 13"));
    entries.push_back(
        commandEntry<Detach>("detach", "Clear an attachment of a driver", "detach 'fxs 1' room"));
    entries.push_back(
        commandEntry<Get>("get", "Print the value of an attachment", "get 'fxs 1' room"));
    entries.push_back(commandEntry<Attachments>("attachments", "Print all attachments of a driver",
                                                "attachments 'fxs 1'"));
}
