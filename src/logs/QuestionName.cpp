#include "logs/QuestionName.h"

#include "common/RunTimeError.h"
#include "common/Text.h"

namespace tallory {

namespace {

constexpr std::string_view kDeletionMark = "|Y";
constexpr std::string_view kOldDeletedPrefix = "DELETED :- '";

std::string WithoutOldWrapping(std::string name) {
    for (std::string_view part : {kDeletionMark, kOldDeletedPrefix, std::string_view("'")})
        name = ReplaceAllNoCase(name, part, "");
    return name;
}

}  // namespace

bool HasDeletionMark(std::string_view name) {
    return ContainsNoCase(name, kDeletionMark);
}

std::string WithoutDeletionMark(std::string_view name) {
    return ReplaceAllNoCase(Trim(name), kDeletionMark, "");
}

bool IsLiveQuestion(const QuestionRec& question) {
    return question.Deleted == kFalse && !HasDeletionMark(TrimView(question.Name));
}

std::string NormaliseQuestionName(std::string_view name) {
    return WithoutOldWrapping(ToUpper(TrimView(name)));
}

std::string ShownQuestionName(std::string_view name) {
    return WithoutOldWrapping(Trim(name));
}

std::string DeletedQuestionCaption(std::string_view name) {
    return "Deleted :- '" + NormaliseQuestionName(name) + "'";
}

std::string PageQuestionName(std::string_view name) {
    return ReplaceAllNoCase(ToUpper(name), kDeletionMark, "");
}

double ChoicePointsOf(const QuestionRec& question, int answer) {
    if (answer < 0 || answer > kNoAnswer) CheckSubscript(answer, 0, kNoAnswer, "ChoicePoints");
    return question.ChoicePoints[answer];
}

}  // namespace tallory
