// Bytes of a file of any size: only what is in sight is asked for and kept.
#pragma once

#include <QAbstractScrollArea>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <vector>

namespace kelvane {

class HexView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit HexView(QWidget* parent = nullptr);

    // Another file, of so many bytes; its first ones are known already.
    void show(std::uint64_t bytes, std::vector<std::byte> head);
    // The answer to chunkWanted(); empty where nothing can be read. The next one is asked for only then, so that
    // whoever pulls the scroll bar through a large file reads little of what was passed.
    void takeChunk(std::uint64_t position, std::vector<std::byte> bytes);
    // As it stands on the screen, for tests and for screen readers.
    [[nodiscard]] QStringList visibleLines() const;

Q_SIGNALS:
    void chunkWanted(quint64 position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    [[nodiscard]] std::uint64_t firstLine() const;
    [[nodiscard]] int linesInView() const;
    [[nodiscard]] QString lineText(std::uint64_t line) const;
    void updateBars();
    void wantVisible();
    void keep(std::uint64_t position, std::vector<std::byte> bytes);

    std::uint64_t bytes_ = 0;
    std::uint64_t linesPerStep_ = 1;                          // of the scroll bar, whose range is that of an int
    std::map<std::uint64_t, std::vector<std::byte>> chunks_;  // by position
    std::deque<std::uint64_t> kept_;                          // their positions, the oldest first
    std::optional<std::uint64_t> asked_;
};

}  // namespace kelvane
