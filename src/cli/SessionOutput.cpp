#include "cli/SessionOutput.h"

#include <sstream>

#include "cli/Cli.h"
#include "cli/ConsoleHost.h"
#include "common/Numbers.h"
#include "common/Text.h"

namespace tallory::cli {

nlohmann::json SessionJson(const Course& course, int number, const std::string& file) {
    using nlohmann::json;
    const QuestionRec& session = course.Questions[0];
    json questions = json::array();
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        json counts = json::array(), points = json::array();
        for (int i = 0; i <= 6; ++i) counts.push_back(question.ResponseCount[i]);
        for (int i = 1; i <= 5; ++i) points.push_back(question.ChoicePoints[i]);
        questions.push_back({{"name", JsonText(question.Name)},
                             {"start", JsonText(question.StartTime)},
                             {"stop", JsonText(question.StopTime)},
                             {"correct", question.CorrectAnswer},
                             {"deleted", question.Deleted != 0},
                             {"anonymous", question.Anonymous != 0},
                             {"counts", counts},
                             {"points", points},
                             {"max", question.MaxPoints},
                             {"average", question.AveragePoints}});
    }
    json voters = json::array();
    for (int v = 1; v <= course.NumVoters; ++v) {
        const VoteRec& vote = course.Votes[v];
        json answers = json::array(), scores = json::array();
        for (int q = 1; q <= course.NumQuestions; ++q) {
            answers.push_back(vote.Answer[q]);
            scores.push_back(vote.Score[q]);
        }
        voters.push_back({{"student", JsonText(vote.StudentId)},
                          {"remote", JsonText(vote.RemoteId)},
                          {"total", vote.Score[0]},
                          {"answers", answers},
                          {"scores", scores}});
    }
    return {{"number", number},
            {"file", JsonText(file)},
            {"title", JsonText(session.Name)},
            {"title_deleted", session.Deleted != 0},
            {"performance", course.SessPerformance},
            {"participation", course.SessParticipation},
            {"min_reply", course.SessMinReply},
            {"min_correct", course.SessMinCorrect},
            {"max_points", session.MaxPoints},
            {"average", session.AveragePoints},
            {"questions", questions},
            {"voters", voters}};
}

std::string SessionText(const Course& course, int number, const std::string& file) {
    std::ostringstream out;
    const QuestionRec& session = course.Questions[0];
    out << "Session " << number << ": " << file;
    if (!TrimView(session.Name).empty()) out << "  \"" << DisplayText(session.Name) << "\"";
    out << "\nPerformance cap " << NumberText(course.SessPerformance) << ", participation "
        << NumberText(course.SessParticipation) << ", min reply " << course.SessMinReply
        << ", min correct " << course.SessMinCorrect << "\nAvailable points "
        << FormatFixed(session.MaxPoints) << ", class average "
        << NumberText(Round(session.AveragePoints, 2)) << "\n\n";
    out << "Question              Correct  A      B      C      D      E      Max    Average\n";
    for (int q = 1; q <= course.NumQuestions; ++q) {
        const QuestionRec& question = course.Questions[q];
        std::string name = DisplayText(question.Name);
        if (question.Deleted) name += " (deleted)";
        if (question.Anonymous) name += " (anonymous)";
        out << name << Padding(22, name.size())
            << (question.CorrectAnswer >= 1 && question.CorrectAnswer <= 5
                    ? std::string(1, static_cast<char>('A' + question.CorrectAnswer - 1))
                    : std::string("-"))
            << "        ";
        for (int i = 1; i <= 5; ++i) {
            std::string cell = std::to_string(question.ResponseCount[i]) + "/" +
                               NumberText(question.ChoicePoints[i]);
            out << cell << Padding(7, cell.size());
        }
        out << NumberText(question.MaxPoints) << Padding(7, NumberText(question.MaxPoints).size())
            << NumberText(Round(question.AveragePoints, 2)) << "\n";
    }
    out << "\nVoter                 Remote        Total\n";
    for (int v = 1; v <= course.NumVoters; ++v) {
        const VoteRec& vote = course.Votes[v];
        std::string student = DisplayText(vote.StudentId);
        out << student << Padding(22, student.size()) << vote.RemoteId
            << Padding(14, vote.RemoteId.size()) << NumberText(vote.Score[0]) << "\n";
    }
    return out.str();
}

}  // namespace tallory::cli
