// grid [--by-name]: the score grid as the main window shows it after its start sequence.
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/commands/Commands.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "grid/ScoreGrid.h"
#include "registration/Roster.h"

namespace tallory::cli {

namespace {

std::string GridText(const Course& course, const LoadedCourse& loaded) {
    std::ostringstream out;
    out << DisplayText(loaded.courseName) << "  (" << loaded.format.caption << ")\n";
    std::string header = "Student" + Padding(24, 7) + "Total   Average  ";
    out << header;
    for (int s = 1; s <= course.NumSessions; ++s) {
        std::string label = SessionHeading(course, s);
        out << DisplayText(label) << Padding(14, label.size());
    }
    out << "\n";
    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        RosterRec entry = GetRosterEntry(course, student.StudentId);
        // A roster line of a bare ID has the ID for a last name: no need to show it twice.
        std::string name = Trim(student.StudentId);
        std::string last = Trim(entry.LastName), first = Trim(entry.FirstName);
        if (!last.empty() && last != name) name += " " + last + (first.empty() ? "" : ", " + first);
        name = Left(name, 30);
        std::string total = NumberText(student.Score[0]);
        std::string average = NumberText(StudentAverage(course, student));
        out << DisplayText(name) << Padding(31, name.size()) << total << Padding(8, total.size())
            << average << Padding(9, average.size());
        for (int s = 1; s <= course.NumSessions; ++s) {
            std::string cell = SessionCellText(student, s);
            out << cell << Padding(14, cell.size());
        }
        out << "\n";
    }
    return out.str();
}

// The grid's document is written as it goes rather than built first: a course of thousands of
// students makes millions of values. The bytes are those nlohmann::json::dump(2) gives for the
// same document, whose objects list their keys in sorted order; small parts go through its own
// serializer.
class GridJsonWriter {
  public:
    explicit GridJsonWriter(std::string& out)
        : out_(out),
          serializer_(nlohmann::detail::output_adapter<char, std::string>(out), ' ',
                      nlohmann::detail::error_handler_t::strict) {}

    // A value as it appears at the nesting depth of `indent` blanks.
    void Value(const nlohmann::json& value, unsigned indent) {
        serializer_.dump(value, true, false, kIndentStep, indent);
    }

    // A text, by itself when it needs no escape.
    void Text(const std::string& text) {
        for (char c : text) {
            const auto byte = static_cast<unsigned char>(c);
            if (byte < 0x20 || byte > 0x7E || c == '"' || c == '\\') return Value(text, 0);
        }
        out_ += '"';
        out_ += text;
        out_ += '"';
    }

    // A grid repeats a few scores many times: the texts of the last ones are kept by value.
    void Number(double value) {
        if (!std::isfinite(value)) {
            out_ += "null";
            return;
        }
        uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        NumberText& kept = numbers_[(bits * 0x9E3779B97F4A7C15) >> (64 - kNumberBits)];
        if (!kept.used || kept.bits != bits) {
            char* end = nlohmann::detail::to_chars(kept.text.data(),
                                                   kept.text.data() + kept.text.size(), value);
            kept.size = static_cast<uint8_t>(end - kept.text.data());
            kept.bits = bits;
            kept.used = true;
        }
        out_.append(kept.text.data(), kept.size);
    }

    // A key of an object whose keys sit at `indent` blanks; `first` for the first key.
    void Key(std::string_view key, unsigned indent, bool first = false) {
        if (!first) out_ += ",\n";
        out_.append(indent, ' ');
        out_ += '"';
        out_ += key;
        out_ += "\": ";
    }

  private:
    static constexpr unsigned kIndentStep = 2;
    static constexpr int kNumberBits = 8;
    struct NumberText {
        uint64_t bits = 0;
        bool used = false;
        uint8_t size = 0;
        std::array<char, 64> text;
    };
    std::vector<NumberText> numbers_ = std::vector<NumberText>(1 << kNumberBits);
    std::string& out_;
    nlohmann::detail::serializer<nlohmann::json> serializer_;
};

// "students": an array at depth 1 of objects at depth 2.
void WriteStudents(std::string& out, GridJsonWriter& json, const Course& course) {
    if (course.NumStudents < 1) {
        out += "[]";
        return;
    }
    out += "[\n";
    for (int i = 1; i <= course.NumStudents; ++i) {
        const StudentRec& student = course.Students[i];
        RosterRec entry = GetRosterEntry(course, student.StudentId);
        out += i == 1 ? "    {\n" : ",\n    {\n";
        json.Key("average", 6, true);
        json.Number(StudentAverage(course, student));
        json.Key("first", 6);
        json.Text(JsonText(entry.FirstName));
        json.Key("id", 6);
        json.Text(JsonText(student.StudentId));
        json.Key("last", 6);
        json.Text(JsonText(entry.LastName));
        json.Key("remote", 6);
        json.Text(JsonText(student.RemoteId));
        json.Key("scores", 6);
        if (course.NumSessions < 1) {
            out += "[]";
        } else {
            out += "[\n";
            for (int s = 1; s <= course.NumSessions; ++s) {
                if (s > 1) out += ",\n";
                out += "        ";
                if (student.Present[s])
                    json.Number(student.Score[s]);
                else
                    out += "null";
            }
            out += "\n      ]";
        }
        json.Key("total", 6);
        json.Number(student.Score[0]);
        out += "\n    }";
    }
    out += "\n  ]";
}

std::string GridJson(const Context& context, const Course& course, const LoadedCourse& loaded) {
    nlohmann::json sessions = nlohmann::json::array();
    for (int s = 1; s <= course.NumSessions; ++s) {
        sessions.push_back({{"number", s},
                            {"file", JsonText(course.SessionFile[s])},
                            {"title", JsonText(course.SessionTitle[s])},
                            {"label", JsonText(SessionLabel(course, s))}});
    }
    std::string out;
    GridJsonWriter json(out);
    out += "{\n";
    json.Key("cms", 2, true);
    json.Value(loaded.format.caption, 2);
    json.Key("course", 2);
    json.Value(JsonText(loaded.courseName), 2);
    json.Key("messages", 2);
    json.Value(context.host.MessagesJson(), 2);
    json.Key("sessions", 2);
    json.Value(sessions, 2);
    json.Key("students", 2);
    WriteStudents(out, json, course);
    out += "\n}";
    return out;
}

int RunGrid(Context& context) {
    const LoadedCourse& loaded = context.loaded;
    const Course& course = context.course;
    if (context.json)
        std::cout << GridJson(context, course, loaded) << "\n";
    else
        std::cout << GridText(course, loaded);
    return 0;
}

}  // namespace

std::function<int()> DeclareGridCommand(CLI::App& command, Context& context) {
    AddByNameOption(command, context);
    return [&context] { return RunGrid(context); };
}

}  // namespace tallory::cli
