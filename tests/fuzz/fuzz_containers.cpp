#include <algorithm>
#include <list>
#include <vector>

#include <utility/TOVA_HashTable.h>
#include <utility/TOVA_List.h>
#include <utility/TOVA_Vector.h>

#include "Fuzz.h"

// Containers against those of the standard library, with arguments that live inside them.

namespace
{

using Pair = std::pair<std::string, std::string>;

class Bench
{
public:
    explicit Bench(Input input) : input_(input), vector_(input_.below(10)) {}

    void run()
    {
        while (!input_.isEmpty()) {
            switch (input_.below(3)) {
            case 0:
                stepVector();
                break;
            case 1:
                stepList();
                break;
            default:
                stepTable();
            }
        }
        compare();
    }

private:
    void stepVector()
    {
        const std::uint32_t index = input_.below(40);
        switch (input_.below(6)) {
        case 0: {
            const std::string text = input_.text(6);
            vector_.append(toString(text));
            vectorModel_.push_back(text);
            break;
        }
        case 1: // one of its own
            vectorModel_.resize(std::max<std::size_t>(vectorModel_.size(), index + 1));
            vector_.append(vector_[index]);
            vectorModel_.push_back(std::string(vectorModel_[index]));
            break;
        case 2:
            vector_.truncate(index);
            vectorModel_.resize(std::min<std::size_t>(vectorModel_.size(), index));
            break;
        case 3: {
            const TOVA_Vector<String> copy(vector_);
            vector_ = copy;
            break;
        }
        case 4:
            vector_.enlarge(index);
            break;
        default:
            require(toStd(std::as_const(vector_)[index]) ==
                        (index < vectorModel_.size() ? vectorModel_[index] : ""),
                    "element of the vector");
        }
        require(vector_.count() == vectorModel_.size(), "count of the vector");
    }

    void stepList()
    {
        const unsigned place = input_.below(static_cast<unsigned>(listModel_.size()) % 200 + 1);
        auto at = list_.begin();
        auto modelAt = listModel_.begin();
        for (unsigned i = 0; i < place; ++i, ++at, ++modelAt)
            require(at != list_.end(), "end of the list");
        switch (input_.below(4)) {
        case 0: {
            const std::string text = input_.text(6);
            list_.insert(at, toString(text));
            listModel_.insert(modelAt, text);
            break;
        }
        case 1:
            if (modelAt != listModel_.end()) { // one of its own
                list_.append(*at);
                listModel_.push_back(std::string(*modelAt));
            }
            break;
        case 2:
            list_.remove(at);
            if (modelAt != listModel_.end())
                listModel_.erase(modelAt);
            break;
        default: {
            TOVA_List<String> copy(list_);
            copy.swap(list_);
        }
        }
        require(list_.count() == listModel_.size(), "count of the list");
    }

    std::vector<Pair>::iterator modelOf(std::string const& key)
    {
        return std::find_if(tableModel_.begin(), tableModel_.end(),
                            [&](Pair const& at) { return at.first == key; });
    }

    void putModel(std::string const& key, std::string const& value)
    {
        const auto found = modelOf(key);
        if (found == tableModel_.end())
            tableModel_.emplace_back(key, value);
        else
            found->second = value;
    }

    void stepTable()
    {
        const std::string key = input_.text(3);
        const auto known = table_.find(toString(key));
        const auto model = modelOf(key);
        require((known == table_.end()) == (model == tableModel_.end()), "found in the table");
        switch (input_.below(5)) {
        case 0: {
            const std::string value = input_.text(4);
            table_.put(toString(key), toString(value));
            putModel(key, value);
            break;
        }
        case 1:
            if (known != table_.end()) { // its own key and value, the value as a new key
                const Pair pair = *model;
                table_.put(known->value, known->key);
                putModel(pair.second, pair.first);
            }
            break;
        case 2:
            if (known != table_.end()) { // by the key in the entry that goes
                table_.remove(known->key);
                tableModel_.erase(model);
            }
            break;
        case 3: {
            TOVA_StringHashTable<String> copy(table_);
            table_ = copy;
            break;
        }
        default:
            if (known != table_.end())
                require(toStd(known->value) == model->second, "value in the table");
        }
        require(table_.count() == tableModel_.size(), "count of the table");
    }

    void compare() const
    {
        std::size_t i = 0;
        for (String const& text : vector_)
            require(toStd(text) == vectorModel_[i++], "vector");
        auto listAt = listModel_.begin();
        for (String const& text : list_)
            require(toStd(text) == *listAt++, "list");
        auto tableAt = tableModel_.begin();
        for (auto const& entry : table_) {
            require(toStd(entry.key) == tableAt->first, "key in its place");
            require(toStd(entry.value) == tableAt->second, "value in its place");
            ++tableAt;
        }
    }

    Input input_;
    TOVA_Vector<String> vector_;
    std::vector<std::string> vectorModel_;
    TOVA_List<String> list_;
    std::list<std::string> listModel_;
    TOVA_StringHashTable<String> table_;
    std::vector<Pair> tableModel_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Bench(Input(data, size)).run();
    return 0;
}
