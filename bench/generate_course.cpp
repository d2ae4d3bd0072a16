// Writes a synthetic course folder for the load benchmark: a roster, registrations (with a few
// clickers nobody registered), settings and session logs laid out as the polling application
// leaves them.
//
//   generate_course FOLDER STUDENTS SESSIONS QUESTIONS [STRAY_CLICKERS] [SEED] [odd]
//
// With "odd" the numbers of the data lines take the other forms a reader must accept ("+1",
// "1.", ".5", "1E0", "-0", tabs, long digit runs, no blanks), some lines are blank or short, and
// some fields carry quotes.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "../tests/LogBuilder.h"

namespace {

using tallory::NumberItem;

// The same value in one of the forms a person or another program might have written.
std::string OddItem(double value, std::mt19937& random) {
    char buffer[64];
    switch (random() % 12) {
        case 0:
            std::snprintf(buffer, sizeof buffer, "+%g", value);
            return buffer;
        case 1:
            std::snprintf(buffer, sizeof buffer, "%.1E", value);
            return buffer;
        case 2:
            std::snprintf(buffer, sizeof buffer, "\t%.17g\t", value);
            return buffer;
        case 3:
            std::snprintf(buffer, sizeof buffer, "%g.", value);
            return buffer;
        case 4:
            std::snprintf(buffer, sizeof buffer, "%.20f", value);
            return buffer;
        case 5:
            return value == 0 ? "-0" : "\"" + NumberItem(value) + "\"";
        case 6:
            std::snprintf(buffer, sizeof buffer, "%gD0", value);
            return buffer;
        case 7:
            return "x";
        default:
            return NumberItem(value);
    }
}

void WriteFile(const std::string& path, const std::string& text) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file || std::fwrite(text.data(), 1, text.size(), file) != text.size()) {
        std::perror(path.c_str());
        std::exit(1);
    }
    std::fclose(file);
}

std::string RemoteOf(int index) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%X", 0x100000 + index * 0x1F3);
    return buffer;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr,
                     "usage: generate_course FOLDER STUDENTS SESSIONS QUESTIONS "
                     "[STRAY_CLICKERS] [SEED]\n");
        return 2;
    }
    std::string folder = argv[1];
    int students = std::atoi(argv[2]);
    int sessions = std::atoi(argv[3]);
    int questions = std::atoi(argv[4]);
    int stray = argc > 5 ? std::atoi(argv[5]) : students / 50;
    std::mt19937 random(argc > 6 ? std::atoi(argv[6]) : 7);
    const bool odd = argc > 7 && std::string(argv[7]) == "odd";
    ::mkdir(folder.c_str(), 0777);
    ::mkdir((folder + "/SessionData").c_str(), 0777);

    std::string roster = "!Last Name,First Name,Student ID\r\n";
    std::string registrations;
    for (int s = 0; s < students; ++s) {
        std::string id = std::to_string(30000000 + s);
        roster +=
            "Student" + std::to_string(s) + ", Given" + std::to_string(s % 97) + ", " + id + "\r\n";
        if (s % 20 != 19) registrations += "#" + RemoteOf(s) + ",\"" + id + "\"\r\n";
    }
    WriteFile(folder + "/Roster.txt", roster);
    WriteFile(folder + "/SessionData/RemoteID.csv", registrations);
    WriteFile(folder + "/SessionData/Config.csv",
              "\"CourseName\" ,\"Synthetic course\" ,\"\"\r\n\"CMS\" ,\"General\" ,\"\"\r\n"
              "\"ParticipationRequirement\" ,\"1\" ,\"\"\r\n");

    std::uniform_int_distribution<int> choice(0, 5);
    std::uniform_int_distribution<int> tenths(30, 400);
    for (int session = 0; session < sessions; ++session) {
        int day = session / 2, month = 1 + (day / 28) % 12;
        char name[32];
        std::snprintf(name, sizeof name, "L26%02d%02d%02d00.csv", month, 1 + day % 28,
                      session % 2 ? 14 : 10);
        tallory::test::LogPlan log;
        log.performance = questions;
        log.questions.resize(questions);
        std::vector<int> correct(questions);
        for (auto& c : correct) c = 1 + choice(random) % 5;
        for (int q = 0; q < questions; ++q) {
            tallory::test::LogQuestion& question = log.questions[q];
            question.name = "Q" + std::to_string(q + 1);
            question.start = question.stop = "10:" + std::to_string(10 + q % 50) + ":00";
            question.correct = std::string(1, static_cast<char>('A' + correct[q] - 1));
            question.points = {};
            question.points[correct[q] - 1] = 1;
        }
        if (odd) log.number = [&](double value) { return OddItem(value, random); };
        for (int voter = 0; voter < students + stray; ++voter) {
            bool isStray = voter >= students;
            if (!isStray && (voter + session) % 25 == 0) continue;  // absent today
            std::string remote = "#" + RemoteOf(isStray ? 900000 + voter : voter);
            if (odd && random() % 50 == 0) log.voters.push_back(tallory::test::RawLine(""));
            if (odd && random() % 50 == 0) {
                log.voters.push_back(tallory::test::RawLine(remote + ", "));  // no total
                continue;
            }
            // A student who never registered is known to the log by the ID typed at the receiver.
            bool registered = isStray || voter % 20 != 19;
            tallory::test::LogVoter line{remote,
                                         registered ? "" : std::to_string(30000000 + voter)};
            line.total = questions / 2;
            for (int q = 0; q < questions; ++q) {
                int answer = choice(random);
                tallory::test::LogAnswer vote =
                    answer == 5 ? "" : std::string(1, static_cast<char>('A' + answer));
                if (answer < 5) ++log.questions[q].counts[answer];
                vote.seconds = tenths(random) / 10.0;
                vote.score = answer + 1 == correct[q] ? 1 : 0;
                if (odd) vote.attempts = 1 + random() % 3;
                if (odd && random() % 9 == 0) vote.first = OddItem(answer + 1, random);
                line.answers.push_back(vote);
            }
            log.voters.push_back(line);
        }
        WriteFile(folder + "/SessionData/" + name, tallory::test::LogText(log));
    }
    return 0;
}
