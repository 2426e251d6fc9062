#include "ui/window_layout.hpp"

#include "base/text.hpp"
#include "ui/qt_text.hpp"

namespace ferrowen::ui {

WindowLayout::WindowLayout(const Settings& settings) {
  for (const std::string& line : split_lines(settings.window_layout)) {
    const std::size_t sign = line.find('=');
    if (sign == std::string::npos) continue;
    m_values.insert(to_qt(line.substr(0, sign)),
                    QByteArray::fromBase64(QByteArray::fromStdString(line.substr(sign + 1))));
  }
}

void WindowLayout::store(Settings& settings) const {
  std::vector<std::string> lines;
  for (auto entry = m_values.cbegin(); entry != m_values.cend(); ++entry)
    lines.push_back(from_qt(entry.key()) + "=" + entry.value().toBase64().toStdString());
  settings.window_layout = join_texts(lines, crlf);
}

}  // namespace ferrowen::ui
