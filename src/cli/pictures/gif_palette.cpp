#include "cli/pictures/gif_palette.h"

#include <algorithm>
#include <array>
#include <queue>

namespace tweenery {
namespace {

constexpr int kBits = 5;
constexpr int kLevels = 1 << kBits;
constexpr size_t kCellCount = size_t{kLevels} * kLevels * kLevels;

size_t cellOf(QRgb pixel) {
    const auto level = [](int sample) {
        constexpr int dropped = 8 - kBits;
        return static_cast<size_t>(sample >> dropped);
    };
    return (level(qRed(pixel)) * kLevels + level(qGreen(pixel))) * kLevels + level(qBlue(pixel));
}

// Of all pixels whose upper bits are the same, or of several such cells.
struct Mean {
    std::array<uint64_t, 3> sums{};  // red, green, blue
    uint64_t count = 0;

    void add(const Mean& other) {
        for (size_t i = 0; i < sums.size(); ++i) {
            sums[i] += other.sums[i];
        }
        count += other.count;
    }
    QRgb color() const {
        const auto mean = [this](size_t i) {
            return static_cast<int>((sums[i] + count / 2) / count);
        };
        return qRgb(mean(0), mean(1), mean(2));
    }
};

using Histogram = std::vector<Mean>;

Histogram histogramOf(const QImage& image) {
    Histogram cells(kCellCount);
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (!GifPalette::shows(line[x])) { continue; }
            const auto value = [](int sample) { return static_cast<uint64_t>(sample); };
            cells[cellOf(line[x])].add(
                {{value(qRed(line[x])), value(qGreen(line[x])), value(qBlue(line[x]))}, 1});
        }
    }
    return cells;
}

int levelOf(size_t cell, int channel) {
    return static_cast<int>(cell >> (2 - channel) * kBits) % kLevels;
}

// Cells whose colours become one.
struct Box {
    std::vector<size_t> cells;
    uint64_t loss = 0;  // grows with the number of pixels and the distance of their colours
    int channel = 0;    // in which these differ most

    bool operator<(const Box& other) const { return loss < other.loss; }
};

Box boxOf(std::vector<size_t> cells, const Histogram& histogram) {
    Box box{std::move(cells)};
    uint64_t count = 0;
    for (const size_t cell : box.cells) {
        count += histogram[cell].count;
    }
    for (int channel = 0; channel < 3; ++channel) {
        const auto [least, most] = std::minmax_element(
            box.cells.begin(), box.cells.end(), [channel](size_t left, size_t right) {
                return levelOf(left, channel) < levelOf(right, channel);
            });
        const int distance = levelOf(*most, channel) - levelOf(*least, channel);
        const uint64_t loss = count * static_cast<uint64_t>(distance * distance);
        if (loss > box.loss) {
            box.loss = loss;
            box.channel = channel;
        }
    }
    return box;
}

// Half of the pixels to each side, as far as that goes.
std::pair<Box, Box> split(Box box, const Histogram& histogram) {
    std::vector<size_t>& cells = box.cells;
    std::sort(cells.begin(), cells.end(), [channel = box.channel](size_t left, size_t right) {
        return std::pair(levelOf(left, channel), left) < std::pair(levelOf(right, channel), right);
    });
    uint64_t count = 0;
    for (const size_t cell : cells) {
        count += histogram[cell].count;
    }
    auto middle = cells.begin();
    for (uint64_t before = 0; before < count / 2 && middle != cells.end() - 1; ++middle) {
        before += histogram[*middle].count;
    }
    if (middle == cells.begin()) { ++middle; }
    std::vector<size_t> upper(middle, cells.end());
    cells.erase(middle, cells.end());
    return {boxOf(std::move(cells), histogram), boxOf(std::move(upper), histogram)};
}

}  // namespace

GifPalette::GifPalette(const QImage& image, size_t mostColors) : m_indexes(kCellCount) {
    const Histogram histogram = histogramOf(image);
    std::vector<size_t> used;
    for (size_t cell = 0; cell < kCellCount; ++cell) {
        if (histogram[cell].count > 0) { used.push_back(cell); }
    }
    if (used.empty()) { return; }
    std::priority_queue<Box> boxes;
    boxes.push(boxOf(std::move(used), histogram));
    while (boxes.size() < mostColors && boxes.top().loss > 0) {
        auto [lower, upper] = split(boxes.top(), histogram);
        boxes.pop();
        boxes.push(std::move(lower));
        boxes.push(std::move(upper));
    }
    for (; !boxes.empty(); boxes.pop()) {
        Mean mean;
        for (const size_t cell : boxes.top().cells) {
            mean.add(histogram[cell]);
            m_indexes[cell] = static_cast<uchar>(m_colors.size());
        }
        m_colors << mean.color();
    }
}

uchar GifPalette::indexOf(QRgb pixel) const {
    return m_indexes[cellOf(pixel)];
}

}  // namespace tweenery
