// Stands in for AppKit of macOS 12: what came later is not here, and what is deprecated is marked.

@_exported import QuartzCore

@MainActor open class NSResponder: NSObject {
	public override init() {}
	public init?(coder: NSCoder) {}
}

@MainActor open class NSView: NSResponder {
	nonisolated public static let frameDidChangeNotification = NSNotification.Name("NSViewFrameDidChange")

	public init(frame frameRect: NSRect) {
		self.frame = frameRect
		super.init()
	}
	public required override init?(coder: NSCoder) { super.init(coder: coder) }
	public override convenience init() { self.init(frame: .zero) }

	open var frame = NSRect.zero {
		didSet {
			NotificationCenter.default.post(name: NSView.frameDidChangeNotification, object: self)
		}
	}
	open var bounds: NSRect { return NSRect(origin: .zero, size: frame.size) }
	open var layer: CALayer?
	open var wantsLayer = false {
		didSet { layer = wantsLayer ? layer ?? CALayer() : nil }
	}
	open var isFlipped: Bool { return false }
	open private(set) var subviews: [NSView] = []
	open func addSubview(_ view: NSView) { subviews.append(view) }
}

open class NSImage: NSObject {
	public typealias Name = String
	/// The pictures that there are; all of them unless told otherwise.
	nonisolated(unsafe) public static var names: Set<String>?

	public init(size: NSSize) {}
	@available(*, deprecated, message: "of macOS 14")
	open func lockFocus() {}
}

extension Bundle {
	public func image(forResource name: NSImage.Name) -> NSImage? {
		guard !name.isEmpty, NSImage.names?.contains(name) ?? true else { return nil }
		return NSImage(size: .zero)
	}
}

@MainActor open class NSViewController: NSResponder {
	public override init() { super.init() }
	open var view = NSView()
	open func viewDidLoad() {}
}
