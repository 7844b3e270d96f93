#include "Dialog.h"

#include <utility>

namespace velmorindal {
namespace {

void doNothing() {}

}  // namespace

Dialog Dialog::question(DialogId id, std::string title, std::string message, std::function<void()> whenYes) {
    return {.id = id,
            .title = std::move(title),
            .message = std::move(message),
            .buttons = {{.label = "Yes", .role = DialogRole::destructive, .action = std::move(whenYes)},
                        {.label = "No", .role = DialogRole::cancel, .action = doNothing}}};
}

Dialog Dialog::notice(DialogId id, std::string title, std::string message) {
    return {.id = id,
            .title = std::move(title),
            .message = std::move(message),
            .buttons = {{.label = "OK", .role = DialogRole::acknowledge, .action = doNothing}}};
}

}  // namespace velmorindal
