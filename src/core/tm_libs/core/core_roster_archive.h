// The archive that reads the project roster: Boost's text archive with one check more.
//
// The text archive sizes a string or a list by the length written before it, before one
// byte of it is read, so a damaged roster could ask for any amount of memory. This one
// refuses a length larger than the whole roster, and a string cut short, with the
// archive's own stream error: what a damaged roster throws anyway.
#pragma once

#include <boost/archive/text_iarchive.hpp>
#include <boost/serialization/collection_size_type.hpp>
#include <cstddef>
#include <istream>
#include <string>

namespace Core::Detail {

class RosterInputArchive : public boost::archive::text_iarchive_impl<RosterInputArchive> {
public:
    // Reads and checks the header; `limit` is the size in bytes of the whole roster.
    RosterInputArchive(std::istream& stream, std::size_t limit);

private:
    friend class boost::archive::load_access;

    using text_iarchive_impl::load;
    void load(std::string& text);
    void load(boost::serialization::collection_size_type& count);
    std::size_t checked_length();

    std::size_t limit_;
};

}  // namespace Core::Detail
