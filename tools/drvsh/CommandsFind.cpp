#include "Shell.h"

#include "Json.h"
#include "Text.h"

namespace
{
class Find : public Command
{
public:
    void declare(Arguments& arguments) override
    {
        arguments.option("--did", "UUID|NAME", did_, "Only drivers of this type");
        arguments.option("--prefix", "PREFIX", prefix_, "Only drivers whose name begins so");
        arguments.list("--attr", "KEY=VALUE", attributes_,
                       "Only drivers with attachments that begin so");
        arguments.option("--iface", "UUID|NAME", iface_, "Only drivers with this interface");
        arguments.flag("--json", json_, "As JSON, for programs");
    }
    void run(Shell& shell) override
    {
        TOVA_UUID const did = did_ ? identifierArgument(*did_) : TOVA_UUID::INVALID();
        String const prefix = toString(prefix_.value_or(""));
        IDriverRepository::Attributes const attributes = attributeArguments(attributes_);
        if (iface_) {
            TOVA_List<TYPPtr<IUnknown>> found;
            shell.repository()->getDriverInterfaces(did, prefix, attributes,
                                                    identifierArgument(*iface_), found);
            for (TYPPtr<IUnknown> const& object : found)
                add(*driverOf(*object));
        } else {
            TOVA_List<TYPPtr<IDriver>> found;
            for (TYPPtr<IDriver> const& driver :
                 shell.repository()->getDrivers(did, prefix, attributes, found))
                add(*driver);
        }
        shell.output().result(text_, value_, json_);
    }

private:
    static TYPPtr<IDriver> driverOf(IUnknown& object)
    {
        void* face = nullptr;
        check(object.queryInterface(IDriver::IID(), &face), "the interface leads to no driver");
        return TYPPtr<IDriver>(static_cast<IDriver*>(face));
    }
    void add(IDriver const& driver)
    {
        text_ += toStd(driver.getDriverName()) + "\n";
        value_.push_back(driverJson(driver));
    }

    std::string text_;
    Json value_ = Json::array();
    bool json_ = false;
    std::optional<std::string> did_;
    std::optional<std::string> prefix_;
    std::optional<std::string> iface_;
    std::vector<std::string> attributes_;
};
} // namespace

void addFindCommand(CommandEntries& entries)
{
    entries.push_back(commandEntry<Find>("find",
                                         "Print the names of drivers that meet all criteria",
                                         "find --prefix 'fxs ' --attr room=1"));
}
