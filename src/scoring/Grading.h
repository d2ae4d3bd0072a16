#pragma once

#include <cstdint>

#include "common/Course.h"

namespace tallory {

// Scores the session last read: every voter's points, question figures, available points.
void RecomputeSession(Course& course);
// Questions with a name and not deleted.
int CountLiveQuestions(const Course& course);
// Responses required for participation points, from the ParticipationRequirement setting.
int16_t RequiredResponses(const Course& course);
void SetRequiredResponses(Course& course);
// Scored: not deleted and no "|Y" in the name.
bool IsLiveQuestion(const QuestionRec& question);

}  // namespace tallory
