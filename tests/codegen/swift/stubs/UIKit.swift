// Stands in for UIKit of iOS 15: what came later is not here, and what is deprecated is marked.

@_exported import QuartzCore

@MainActor open class UIResponder: NSObject {
	public override init() {}
}

@MainActor open class UIView: UIResponder {
	public enum ContentMode: Int, Sendable {
		case scaleToFill, scaleAspectFit, scaleAspectFill, redraw, center, top, bottom, left, right
		case topLeft, topRight, bottomLeft, bottomRight
	}

	public init(frame: CGRect) {
		super.init()
		self.frame = frame
	}
	public required init?(coder: NSCoder) { super.init() }
	public override convenience init() { self.init(frame: .zero) }

	public let layer = CALayer()
	open var bounds: CGRect {
		get { return layer.bounds }
		set { layer.bounds = newValue }
	}
	open var center: CGPoint {
		get { return layer.position }
		set { layer.position = newValue }
	}
	open var frame: CGRect {
		get {
			return CGRect(
				x: center.x - bounds.width / 2, y: center.y - bounds.height / 2,
				width: bounds.width, height: bounds.height)
		}
		set {
			bounds.size = newValue.size
			center = CGPoint(x: newValue.midX, y: newValue.midY)
		}
	}
	open var transform = CGAffineTransform.identity
	open var alpha: CGFloat = 1
	open var contentMode = ContentMode.scaleToFill
	open private(set) var subviews: [UIView] = []
	open func addSubview(_ view: UIView) {
		subviews.append(view)
		layer.addSublayer(view.layer)
	}
	open func layoutSubviews() {}
}

open class UIImage: NSObject, @unchecked Sendable {
	/// The pictures that there are; all of them unless told otherwise.
	nonisolated(unsafe) public static var names: Set<String>?

	public let name: String
	public init?(named name: String, in bundle: Bundle?, compatibleWith traits: UITraitCollection?) {
		guard !name.isEmpty, UIImage.names?.contains(name) ?? true else { return nil }
		self.name = name
	}
	public override init() { self.name = "" }
	open private(set) lazy var cgImage: CGImage? = CGImage()
}

@MainActor open class UITraitCollection: NSObject {}

open class UIGraphicsImageRendererContext: NSObject {}

open class UIGraphicsImageRenderer: NSObject {
	public init(size: CGSize) {}
	open func image(actions: (UIGraphicsImageRendererContext) -> Void) -> UIImage {
		return UIImage()
	}
}

@available(*, deprecated, message: "of iOS 17")
public func UIGraphicsBeginImageContextWithOptions(_ size: CGSize, _ opaque: Bool, _ scale: CGFloat) {}

@MainActor open class UIImageView: UIView {
	open var image: UIImage?
}

@MainActor open class UIControl: UIView {
	public struct State: OptionSet, Sendable {
		public let rawValue: UInt
		public init(rawValue: UInt) { self.rawValue = rawValue }
		public static let normal = State([])
	}
}

@MainActor open class UIButton: UIControl {
	public enum ButtonType: Int, Sendable { case custom, system }
	public convenience init(type buttonType: ButtonType) { self.init(frame: .zero) }
	open func setImage(_ image: UIImage?, for state: UIControl.State) {}
}

@MainActor open class UIViewController: UIResponder {
	public override init() {}
	open var view: UIView! = UIView()
	open func viewDidLoad() {}
}
