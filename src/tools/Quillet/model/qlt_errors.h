// The records thrown by the project file reader. Each is an empty structure thrown by value;
// none carries a message. Where each is thrown and caught is part of the file format.
//
// UNEXPECTED_END_OF_FILE is ours: a file that ends inside a record, where the reader would
// otherwise wait for a close line for ever. Nothing catches it below the document.
#pragma once

#include <exception>

// X(NAME) for every reader record, in the order of the format's table.
#define QLT_READ_ERRORS(X) \
    X(NOT_A_QLT_FILE)      \
    X(NOT_A_TPAGE)         \
    X(NOT_A_TREGION)       \
    X(NOT_A_FONT_PAGE)     \
    X(NOT_A_FMV_PAGE)      \
    X(NOT_A_UI_REGION)     \
    X(NOT_A_UI_OBJECT)     \
    X(NO_BUILDER)          \
    X(BAD_BUILDER)         \
    X(BAD_ART)             \
    X(BAD_SCROLL_BOX)      \
    X(NOT_A_UI_PIECE)      \
    X(NOT_A_LPAGE)         \
    X(BAD_TAG)             \
    X(UNEXPECTED_END_OF_FILE)

// The common base lets the document catch every reader record in one place; it adds no
// members, so each record stays an empty structure.
struct QLT_READ_ERROR {};

#define QLT_DECLARE_READ_ERROR(NAME) \
    struct NAME : QLT_READ_ERROR {};
QLT_READ_ERRORS(QLT_DECLARE_READ_ERROR)
#undef QLT_DECLARE_READ_ERROR

// The name of the reader record held by `failure` ("BAD_TAG"), or null when it holds
// something else.
const char* ReadErrorName(std::exception_ptr failure);
