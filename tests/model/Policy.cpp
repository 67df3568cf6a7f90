#include "Policy.h"

bool PolicyState::isNthCall() const
{
    return policy_.refuses == Policy::Refuses::NTH_CALL && calls_ % policy_.nth == 0;
}

std::int32_t PolicyState::answer(bool refuse, std::string& error) const
{
    if (policy_.chatters || (refuse && !policy_.silent))
        error = policy_.words;
    return refuse ? policy_.code : 0;
}

std::int32_t PolicyState::added(std::string const& driverName, std::string& error)
{
    ++calls_;
    const bool named = policy_.refuses == Policy::Refuses::ADDED &&
                       driverName.compare(0, policy_.name.size(), policy_.name) == 0;
    return answer(policy_.refuses == Policy::Refuses::ALWAYS || named || isNthCall(), error);
}

std::int32_t PolicyState::set(std::string const& key, std::string const& value, std::string& error)
{
    ++calls_;
    const bool pair =
        policy_.refuses == Policy::Refuses::SET && key == policy_.name && value == policy_.value;
    return answer(policy_.refuses == Policy::Refuses::ALWAYS || pair || isNthCall(), error);
}

std::int32_t PolicyState::timeslots(std::uint32_t changed, std::string& error)
{
    ++calls_;
    const bool masked =
        policy_.refuses == Policy::Refuses::TIMESLOTS && (changed & policy_.mask) != 0;
    return answer(policy_.refuses == Policy::Refuses::ALWAYS || masked || isNthCall(), error);
}
