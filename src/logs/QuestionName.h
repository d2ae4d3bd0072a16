#pragma once

#include <string>
#include <string_view>

#include "common/Course.h"

namespace tallory {

// The rules of a question's name, shared by the log reader and writer, scoring, Set Scores and
// the reports. The instructor deletes a question by the mark "|Y" behind its name; older logs
// wrapped a deleted name as "Deleted :- 'NAME'".

// "|Y" anywhere in the name, in any case.
bool HasDeletionMark(std::string_view name);

// The name as the reader keeps it: trimmed, every "|Y" (any case) removed.
std::string WithoutDeletionMark(std::string_view name);

// Scored: not deleted and no mark in the name.
bool IsLiveQuestion(const QuestionRec& question);

// The name a rewritten log carries: trimmed, upper-cased, without "|Y", "DELETED :- '" and "'".
std::string NormaliseQuestionName(std::string_view name);

// The name Set Scores shows for a live question: as the normalised name but in the case the
// instructor typed; capitals come with the next save.
std::string ShownQuestionName(std::string_view name);

// The name Set Scores shows for a deleted question.
std::string DeletedQuestionCaption(std::string_view name);

// The name the report pages show: upper-cased, every "|Y" removed.
std::string PageQuestionName(std::string_view name);
// The points an answer code earns on a question: ChoicePoints[answer]. Codes 0 and 6 take the
// unused entries 0 and 6, which hold 0; a code outside 0..6 is run-time error 9.
double ChoicePointsOf(const QuestionRec& question, int answer);

}  // namespace tallory
