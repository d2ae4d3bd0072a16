#include "web/Internet.h"

#include "common/LineReader.h"

namespace tallory {

std::string ReadLocalText(const std::string& path) {
    std::string text;
    LineReader reader(path);
    if (!reader.IsOpen()) return text;
    for (std::string line; reader.ReadLine(line);) {
        text += line;
        text += "\r\n";
    }
    return text;
}

}  // namespace tallory
