#pragma once

#include <cstdint>
#include <string>

#include "common/Course.h"
#include "logs/QuestionName.h"

namespace tallory {

// Scores the session last read: every voter's points, question figures, available points.
void RecomputeSession(Course& course);

// Whether opening a session scores it. Only the rename of a session reads without scoring: it
// writes the log back as it was read and leaves the grid's figures as they stand.
enum class Scoring { Scored, Unscored };
// Reads the session log at `path` into Questions and Votes and scores it; the log need not be
// one of the course's sessions.
void OpenSessionLog(Course& course, const std::string& path, Scoring scoring = Scoring::Scored);
// Reads session `session` of the loaded course and scores it.
void OpenSession(Course& course, int session);
// Questions with a name and not deleted.
int CountLiveQuestions(const Course& course);
// Responses required for participation points, from the ParticipationRequirement setting.
int16_t RequiredResponses(const Course& course);
void SetRequiredResponses(Course& course);
// The points the session just scored offers: its performance maximum plus its participation
// points, to the cent, halves up. The session summary page shows it as "Total Points Available".
double TotalPointsAvailable(const Course& course);

}  // namespace tallory
