#include <initializer_list>

#include <utility/Numbers.h>
#include <utility/StringTokenizer.h>

#include <drvrepo/IDriver.h>

namespace
{

using Components = TOVA_Vector<String>;

Components nonEmpty(std::initializer_list<String const*> components)
{
    Components gathered(8);
    for (String const* component : components)
        if (!component->isEmpty())
            gathered.append(*component);
    return gathered;
}

/// Appends the numbers up to the first that is absent.
void appendNumbers(String& name, std::initializer_list<unsigned int> numbers)
{
    for (unsigned int number : numbers) {
        if (number == ABSENT_NUMBER)
            return;
        name.concatf(" %lu", static_cast<unsigned long>(number));
    }
}

/// The components of a name, the head first.
Components componentsOf(String const& name)
{
    Components found(8);
    StringTokenizer tokens(name, "/");
    String token;
    while (tokens.nextToken(token))
        found.append(token);
    return found;
}

struct Head
{
    String type;
    unsigned int number1 = ABSENT_NUMBER;
    unsigned int number2 = ABSENT_NUMBER;
    unsigned int number3 = ABSENT_NUMBER;
};

/// The first component taken apart; empty and absent where there is none.
Head headOf(Components const& components)
{
    Head head;
    StringTokenizer tokens(components[0], " ");
    tokens.nextToken(head.type);
    String token;
    for (unsigned int* number : {&head.number1, &head.number2, &head.number3})
        if (tokens.nextToken(token))
            *number = u_valueOf32(token.cString());
    return head;
}

/// Replaces the content of `components` by what `found` holds from `first` on. Only making room
/// can fail, so that comes first; all of `found` gets some.
void replace(Components& components, Components const& found, unsigned int first)
{
    while (components.capacity() < found.count())
        components.enlarge(components.capacity() + 1);
    components.truncate(0);
    for (unsigned int i = first; i < found.count(); ++i)
        components.append(found[i]);
}

/// Writes component `index` to `out`, empty past the end; a null `out` is passed over.
void store(Components const& components, unsigned int index, String* out)
{
    if (out != nullptr)
        *out = components[index];
}

} // namespace

// Results are written last, or from copies: they may be the same objects as the arguments.

String& IDriver::BUILD_DRIVER_NAME(String& name, Components const& components)
{
    String joined;
    for (unsigned int i = 0; i < components.count(); ++i) {
        if (i != 0)
            joined.internalConcat("/", 1);
        joined.concat(components[i]);
    }
    return name = joined;
}

String& IDriver::BUILD_DRIVER_NAME(String& name, String const& type, unsigned int number1,
                                   unsigned int number2, unsigned int number3,
                                   Components const& further)
{
    String built(type);
    appendNumbers(built, {number1, number2, number3});
    for (String const& component : further) {
        built.internalConcat("/", 1);
        built.concat(component);
    }
    return name = built;
}

String& IDriver::BUILD_DRIVER_NAME(String& name, String const& type, unsigned int number1,
                                   unsigned int number2, unsigned int number3, String const& c1,
                                   String const& c2, String const& c3, String const& c4)
{
    return BUILD_DRIVER_NAME(name, type, number1, number2, number3, nonEmpty({&c1, &c2, &c3, &c4}));
}

String& IDriver::BUILD_DRIVER_NAME(String& name, String const& c1, String const& c2,
                                   String const& c3, String const& c4, String const& c5)
{
    return BUILD_DRIVER_NAME(name, nonEmpty({&c1, &c2, &c3, &c4, &c5}));
}

unsigned int IDriver::SPLIT_DRIVER_NAME(String const& name, Components& components)
{
    const Components found = componentsOf(name);
    replace(components, found, 0);
    return found.count();
}

unsigned int IDriver::SPLIT_DRIVER_NAME(String const& name, String& type, unsigned int& number1,
                                        unsigned int& number2, unsigned int& number3,
                                        Components& further)
{
    const Components found = componentsOf(name);
    const Head head = headOf(found);
    replace(further, found, 1);
    type = head.type;
    number1 = head.number1;
    number2 = head.number2;
    number3 = head.number3;
    return found.count();
}

unsigned int IDriver::SPLIT_DRIVER_NAME(String const& name, String& type, unsigned int& number1,
                                        unsigned int& number2, unsigned int& number3, String* c1,
                                        String* c2, String* c3, String* c4)
{
    Components further(8);
    const unsigned int count = SPLIT_DRIVER_NAME(name, type, number1, number2, number3, further);
    store(further, 0, c1);
    store(further, 1, c2);
    store(further, 2, c3);
    store(further, 3, c4);
    return count;
}

unsigned int IDriver::SPLIT_DRIVER_NAME(String const& name, String* c1, String* c2, String* c3,
                                        String* c4, String* c5)
{
    const Components components = componentsOf(name);
    store(components, 0, c1);
    store(components, 1, c2);
    store(components, 2, c3);
    store(components, 3, c4);
    store(components, 4, c5);
    return components.count();
}

String& IDriver::REBUILD_DRIVER_NAME(String& name, String const& oldName, String const& type)
{
    String oldType;
    unsigned int number1 = ABSENT_NUMBER;
    unsigned int number2 = ABSENT_NUMBER;
    unsigned int number3 = ABSENT_NUMBER;
    Components further(8);
    SPLIT_DRIVER_NAME(oldName, oldType, number1, number2, number3, further);
    return BUILD_DRIVER_NAME(name, type, number1, number2, number3, further);
}
