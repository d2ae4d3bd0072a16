#include "common/RecordingHost.h"

namespace tallory {

Answer RecordingHost::Message(std::string_view text, std::string_view title, Icon icon,
                              Buttons buttons, MessageStyle style) {
    messages.push_back({std::string(text), std::string(title), icon, buttons, style,
                        DefaultButton(buttons, style)});
    if (buttons == Buttons::Ok) return Answer::Ok;
    if (!answers.empty()) {
        Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    if (buttons == Buttons::OkCancel)
        return defaultAnswer == Answer::Yes ? Answer::Ok : Answer::Cancel;
    return defaultAnswer;
}

const char* IconName(Icon icon) {
    switch (icon) {
        case Icon::None:
            return "none";
        case Icon::Information:
            return "information";
        case Icon::Exclamation:
            return "exclamation";
        case Icon::Question:
            return "question";
        case Icon::Stop:
            return "stop";
    }
    return "none";
}

}  // namespace tallory
