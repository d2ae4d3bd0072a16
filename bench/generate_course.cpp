// Writes a synthetic course folder for the load benchmark: a roster, registrations (with a few
// clickers nobody registered), settings and session logs laid out as the polling application
// leaves them.
//
//   generate_course FOLDER STUDENTS SESSIONS QUESTIONS [STRAY_CLICKERS] [SEED]
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

std::string NumberItem(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value < 0 ? -value : value);
    std::string digits = buffer;
    if (digits.rfind("0.", 0) == 0) digits.erase(0, 1);
    return (value < 0 ? "-" : " ") + digits + " ";
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
        std::vector<int> correct(questions);
        std::vector<std::vector<int>> counts(questions, std::vector<int>(5));
        for (auto& c : correct) c = 1 + choice(random) % 5;
        std::string data;
        data.reserve(static_cast<size_t>(students + stray) * questions * 40);
        for (int voter = 0; voter < students + stray; ++voter) {
            bool isStray = voter >= students;
            if (!isStray && (voter + session) % 25 == 0) continue;  // absent today
            std::string remote = RemoteOf(isStray ? 900000 + voter : voter);
            // A student who never registered is known to the log by the ID typed at the receiver.
            bool registered = isStray || voter % 20 != 19;
            std::string student = registered ? " " : "\"" + std::to_string(30000000 + voter) + "\"";
            data += "\r\n#" + remote + "," + student + "," + NumberItem(questions / 2) + ",";
            for (int q = 0; q < questions; ++q) {
                int answer = choice(random);
                std::string letter =
                    answer == 5 ? "" : std::string(1, static_cast<char>('A' + answer));
                if (answer < 5) ++counts[q][answer];
                double seconds = tenths(random) / 10.0;
                data += letter + " ," + NumberItem(answer + 1 == correct[q] ? 1 : 0) + "," +
                        NumberItem(seconds) + "," + NumberItem(1) + "," + letter + " ," +
                        NumberItem(seconds) + ",";
            }
        }
        std::string log = "Scoring,  Performance = " + NumberItem(questions) +
                          ", Participation = " + NumberItem(1) + ", Min Reply = " + NumberItem(1) +
                          ", Min Correct = " + NumberItem(1) + ",\"\"\r\nQuestion, ,";
        for (int q = 0; q < questions; ++q)
            log += " ,\"Q" + std::to_string(q + 1) +
                   "\" ,Score   ,  Final Answer Time, Number of Attempts, First Response,  Time ";
        for (const char* heading : {"\r\nStart Time, , ", "\r\nStop Time, ,"}) {
            log += heading;
            for (int q = 0; q < questions; ++q)
                log += " ,10:" + std::to_string(10 + q % 50) + ":00,, , , ,";
        }
        log += "\r\nCorrect Answer, ,";
        for (int q = 0; q < questions; ++q)
            log += " ," + std::string(1, static_cast<char>('A' + correct[q] - 1)) + ",, , , ,";
        for (int i = 0; i < 5; ++i) {
            log += "\r\nResponse " + std::string(1, static_cast<char>('A' + i)) + ",    ,   ,";
            for (int q = 0; q < questions; ++q)
                log += NumberItem(counts[q][i]) + "," + NumberItem(i + 1 == correct[q] ? 1 : 0) +
                       ",, , , ,";
        }
        WriteFile(folder + "/SessionData/" + name, log + data + "\r\n");
    }
    return 0;
}
