// Heap bytes a keyframe and an element, and the peak while opening. A program of its own: it counts
// every allocation, which would slow the other measurements.

#include <malloc.h>

#include <QCoreApplication>
#include <QPixmap>
#include <QVariantAnimation>
#include <atomic>
#include <cstdio>
#include <memory>
#include <vector>

#include "bench/big_project.h"
#include "storage/package_store.h"

namespace {

std::atomic<int64_t> heapBytes{0};
std::atomic<int64_t> heapPeak{0};

void count(void* block, int sign) {
    if (!block) { return; }
    // With the chunk's header, as the heap loses it.
    const int64_t bytes = sign * static_cast<int64_t>(malloc_usable_size(block) + sizeof(size_t));
    const int64_t now = heapBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    int64_t peak = heapPeak.load(std::memory_order_relaxed);
    while (now > peak && !heapPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {}
}

}  // namespace

// The C library's own allocator under the names that it leaves for replacements like this one.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

void* malloc(size_t size) {
    void* block = __libc_malloc(size);
    count(block, 1);
    return block;
}
void* calloc(size_t items, size_t size) {
    void* block = __libc_calloc(items, size);
    count(block, 1);
    return block;
}
void* realloc(void* old, size_t size) {
    count(old, -1);
    void* block = __libc_realloc(old, size);
    count(block, 1);
    return block;
}
void* aligned_alloc(size_t alignment, size_t size) {
    void* block = __libc_memalign(alignment, size);
    count(block, 1);
    return block;
}
void free(void* block) {
    count(block, -1);
    __libc_free(block);
}
}

namespace tweenery::bench {
namespace {

class Meter {
 public:
    Meter() : m_start(heapBytes.load()) { heapPeak = m_start; }
    int64_t grown() const { return heapBytes.load() - m_start; }
    int64_t peak() const { return heapPeak.load() - m_start; }

 private:
    int64_t m_start;
};

double each(int64_t bytes, int64_t count) {
    return static_cast<double>(bytes) / static_cast<double>(count);
}

void reportVariantAnimation() {
    constexpr int kKeys = 1000;
    QVariantAnimation animation;
    const Meter meter;
    for (int key = 0; key < kKeys; ++key) {
        animation.setKeyValueAt(key / double{kKeys - 1}, static_cast<double>(key));
    }
    std::printf("QVariantAnimation, a key            %8.1f bytes\n", each(meter.grown(), kKeys));
}

void reportProject() {
    const BigProjectShape shape;
    const QString path = bigPackage(shape);
    const Meter whole;
    FileWrapper::Ptr root = readPackage(path);
    const int64_t packageBytes = whole.grown();
    const Meter elements;
    PCProject::Ptr project = PCProject::projectForReadingWithFileWrapper(root);
    const int64_t opened = elements.grown();
    const Meter keyframes;
    for (const PCAnimation::Ptr& animation : project->animationsManager().animations()) {
        animation->loadAllTimelines();
    }
    const int64_t decoded = keyframes.grown();
    const auto count = static_cast<int64_t>(project->canvas()->elementAndAllDescendants().size());
    const PCElement::Ptr canvas = project->canvas();
    const Meter tree;
    const PCElement::Ptr copy = PCElement::elementByDuplicatingElement(*canvas);
    std::printf("an element of the tree              %8.1f bytes (%lld elements)\n",
                each(tree.grown(), count), static_cast<long long>(count));
    std::printf("a keyframe, with its timeline       %8.1f bytes (%d keyframes)\n",
                each(decoded, shape.keyframes), shape.keyframes);
    std::printf("the same with animations and groups %8.1f bytes\n",
                each(decoded + opened - tree.grown(), shape.keyframes));
    std::printf("package in memory                   %8.1f MB\n", each(packageBytes, 1000000));
    std::printf("model                               %8.1f MB\n", each(opened + decoded, 1000000));
    std::printf("peak while opening                  %8.1f MB\n", each(whole.peak(), 1000000));
}

}  // namespace
}  // namespace tweenery::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    tweenery::bench::bigPackage();
    tweenery::bench::reportVariantAnimation();
    tweenery::bench::reportProject();
    return 0;
}
