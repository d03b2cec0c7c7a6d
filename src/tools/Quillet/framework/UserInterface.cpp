#include "UserInterface.h"

namespace framework {

Answer DefaultAnswer(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::YesNo:
        case MessageButtons::YesNoCancel:
            return Answer::Yes;
        case MessageButtons::RetryCancel:
            return Answer::Retry;
        case MessageButtons::Ok:
        case MessageButtons::OkCancel:
            break;
    }
    return Answer::Ok;
}

}  // namespace framework
