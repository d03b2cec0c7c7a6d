#include "qlt_errors.h"

const char* ReadErrorName(std::exception_ptr failure) {
    try {
        std::rethrow_exception(failure);
    }
#define QLT_NAME_READ_ERROR(NAME) \
    catch (const NAME&) {         \
        return #NAME;             \
    }
    QLT_READ_ERRORS(QLT_NAME_READ_ERROR)
#undef QLT_NAME_READ_ERROR
    catch (...) {
        return nullptr;
    }
}
