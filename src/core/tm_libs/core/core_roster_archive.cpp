#include "core_roster_archive.h"

// The archive's member templates are compiled here for this archive, as Boost's own
// library compiles them for its text archive.
#include <boost/archive/impl/archive_serializer_map.ipp>
#include <boost/archive/impl/basic_text_iarchive.ipp>
#include <boost/archive/impl/text_iarchive_impl.ipp>

template class boost::archive::detail::archive_serializer_map<Core::Detail::RosterInputArchive>;
template class boost::archive::basic_text_iarchive<Core::Detail::RosterInputArchive>;
template class boost::archive::text_iarchive_impl<Core::Detail::RosterInputArchive>;

namespace Core::Detail {
namespace {

[[noreturn]] void throw_stream_error() {
    boost::serialization::throw_exception(
        boost::archive::archive_exception(boost::archive::archive_exception::input_stream_error));
}

}  // namespace

RosterInputArchive::RosterInputArchive(std::istream& stream, std::size_t limit)
    : text_iarchive_impl(stream, 0), limit_(limit) {
    init();
}

std::size_t RosterInputArchive::checked_length() {
    std::size_t length = 0;
    text_iarchive_impl::load(length);
    if (length > limit_) throw_stream_error();
    return length;
}

void RosterInputArchive::load(std::string& text) {
    const std::size_t length = checked_length();
    is.get();  // the space between the length and the text
    text.resize(length);
    if (length > 0 && !is.read(text.data(), static_cast<std::streamsize>(length)))
        throw_stream_error();
}

void RosterInputArchive::load(boost::serialization::collection_size_type& count) {
    count = boost::serialization::collection_size_type(checked_length());
}

}  // namespace Core::Detail
