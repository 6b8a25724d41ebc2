#include "rklog/Levels.h"
#include "rklog/RecordWriter.h"
#include "rklog/VisibleText.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace rklog {

namespace {

/// The terminal's attributes for each level; "" is plain.
constexpr std::array<std::string_view, kLevelCount> kAttributes = {"1;37;41", "1;31", "31", "33", "36", "", "2"};

constexpr std::size_t kLevelWidth = 9;  // of "Emergency"

class TextWriter : public RecordWriter {
public:
    explicit TextWriter(Colors colors) : m_colors(colors) {}

    void Write(const Record& record, std::ostream& out) override {
        m_line.clear();
        AppendTime(record);
        AppendLevel(record);
        if (!record.process.empty())
            AppendPart(record.process, "  ");
        if (!record.category.empty())
            AppendPart(record.category, "  ");
        AppendVisible(record.message, m_line);
        if (!record.description.empty())
            AppendVisible(" (" + record.description + ")", m_line);
        out << (m_line += '\n');
    }

private:
    void AppendPart(std::string_view text, std::string_view behind) {
        AppendVisible(text, m_line);
        m_line += behind;
    }
    /// The time to the second and on the log's wall; what stands in the log when it is not understood.
    void AppendTime(const Record& record) {
        constexpr std::size_t kSecondLength = 19;  // of "2026-11-16T21:52:05"
        std::string time = record.time.empty() ? record.timestamp : record.time.substr(0, kSecondLength);
        if (!record.time.empty())
            time[10] = ' ';
        if (!time.empty())
            AppendPart(time, "  ");
    }
    void AppendLevel(const Record& record) {
        std::string_view name = record.level;
        if (name.empty())
            name = record.damage.empty() ? "-" : std::string_view(record.damage);
        const std::optional<rk::ErkLogLevel> level = LevelOf(record.level);
        const std::string_view attributes =
            level && m_colors == Colors::Terminal ? kAttributes[static_cast<std::size_t>(*level)] : std::string_view();
        if (!attributes.empty())
            m_line.append("\x1B[").append(attributes).append("m");
        m_line += name;
        if (!attributes.empty())
            m_line += "\x1B[0m";
        m_line.append(kLevelWidth - std::min(kLevelWidth, name.size()) + 2, ' ');
    }

    Colors m_colors;
    std::string m_line;
};

}  // namespace

std::unique_ptr<RecordWriter> MakeTextWriter(Colors colors) { return std::make_unique<TextWriter>(colors); }

}  // namespace rklog
