#include <utility/InfoContainer.h>

void InfoContainer::add(unsigned depth, unsigned detail, String const& key, String const& value)
{
    rows_.push_back(Row{depth, detail, key, value});
}
