#include <cstdlib>

#include <gtest/gtest.h>

#include "Heap.h"

namespace
{

/// Leaves behind, in the file named by DRVREPO_PLACES, where requests for memory failed.
class Places : public testing::Environment
{
public:
    void TearDown() override
    {
        char const* const name = std::getenv("DRVREPO_PLACES");
        if (name == nullptr)
            return;
        std::FILE* const file = std::fopen(name, "w");
        ASSERT_NE(nullptr, file) << name;
        heap::writePlaces(file);
        std::fclose(file);
    }
};

testing::Environment* const s_places = testing::AddGlobalTestEnvironment(new Places);

} // namespace
