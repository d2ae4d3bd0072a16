#pragma once

#include <cstdint>

#include "common/Course.h"
#include "logs/QuestionName.h"

namespace tallory {

// Scores the session last read: every voter's points, question figures, available points.
void RecomputeSession(Course& course);
// Questions with a name and not deleted.
int CountLiveQuestions(const Course& course);
// Responses required for participation points, from the ParticipationRequirement setting.
int16_t RequiredResponses(const Course& course);
void SetRequiredResponses(Course& course);
// The points an answer code earns on a question: ChoicePoints[answer]. Codes 0 and 6 take the
// unused entries 0 and 6, which hold 0; a code outside 0..6 is run-time error 9.
double ChoicePointsOf(const QuestionRec& question, int answer);
// The points the session just scored offers: its performance maximum plus its participation
// points, to the cent, halves up. The session summary page shows it as "Total Points Available".
double TotalPointsAvailable(const Course& course);

}  // namespace tallory
