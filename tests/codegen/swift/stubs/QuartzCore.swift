// Stands in for QuartzCore: layers, and animations that a layer holds by their keys.

@_exported import CoreGraphics

public struct CATransform3D: Sendable, Equatable {
	public var m11, m12, m21, m22: CGFloat
	public var m33: CGFloat = 1
}
public let CATransform3DIdentity = CATransform3D(m11: 1, m12: 0, m21: 0, m22: 1)

public func CATransform3DMakeScale(_ sx: CGFloat, _ sy: CGFloat, _ sz: CGFloat) -> CATransform3D {
	return CATransform3D(m11: sx, m12: 0, m21: 0, m22: sy, m33: sz)
}
/// About the z axis, which is the only one in use.
public func CATransform3DMakeRotation(
	_ angle: CGFloat, _ x: CGFloat, _ y: CGFloat, _ z: CGFloat
) -> CATransform3D {
	let turn = CGAffineTransform(rotationAngle: angle)
	return CATransform3D(m11: turn.a, m12: turn.b, m21: turn.c, m22: turn.d)
}
public func CATransform3DScale(
	_ t: CATransform3D, _ sx: CGFloat, _ sy: CGFloat, _ sz: CGFloat
) -> CATransform3D {
	return CATransform3D(
		m11: t.m11 * sx, m12: t.m12 * sx, m21: t.m21 * sy, m22: t.m22 * sy, m33: t.m33 * sz)
}

public struct CAMediaTimingFillMode: RawRepresentable, Hashable, Sendable {
	public let rawValue: String
	public init(rawValue: String) { self.rawValue = rawValue }
	public static let both = CAMediaTimingFillMode(rawValue: "both")
	public static let removed = CAMediaTimingFillMode(rawValue: "removed")
}

public struct CAMediaTimingFunctionName: RawRepresentable, Hashable, Sendable {
	public let rawValue: String
	public init(rawValue: String) { self.rawValue = rawValue }
	public static let linear = CAMediaTimingFunctionName(rawValue: "linear")
	public static let easeIn = CAMediaTimingFunctionName(rawValue: "easeIn")
	public static let easeOut = CAMediaTimingFunctionName(rawValue: "easeOut")
	public static let easeInEaseOut = CAMediaTimingFunctionName(rawValue: "easeInEaseOut")
}

open class CAMediaTimingFunction: NSObject {
	/// Of the Bézier curve's second and third point: x, y, x, y.
	public let controlPoints: [Float]

	public convenience init(name: CAMediaTimingFunctionName) {
		switch name {
		case .easeIn: self.init(controlPoints: 0.42, 0, 1, 1)
		case .easeOut: self.init(controlPoints: 0, 0, 0.58, 1)
		case .easeInEaseOut: self.init(controlPoints: 0.42, 0, 0.58, 1)
		default: self.init(controlPoints: 0, 0, 1, 1)
		}
	}
	public init(controlPoints c1x: Float, _ c1y: Float, _ c2x: Float, _ c2y: Float) {
		self.controlPoints = [c1x, c1y, c2x, c2y]
	}
}

/// Not bound to an actor, as in the frameworks: a conforming view has to come back to its own.
public protocol CAAnimationDelegate: NSObjectProtocol {
	func animationDidStart(_ anim: CAAnimation)
	func animationDidStop(_ anim: CAAnimation, finished flag: Bool)
}
// Both are optional in the frameworks.
extension CAAnimationDelegate {
	public func animationDidStart(_ anim: CAAnimation) {}
	public func animationDidStop(_ anim: CAAnimation, finished flag: Bool) {}
}

open class CAAnimation: NSObject {
	public required override init() {}
	open var duration: CFTimeInterval = 0
	open var beginTime: CFTimeInterval = 0
	open var repeatCount: Float = 0
	open var autoreverses = false
	open var fillMode = CAMediaTimingFillMode.removed
	open var isRemovedOnCompletion = true
	/// Held strongly, by an animation as by its copies.
	open var delegate: (any CAAnimationDelegate)?

	func copyFields(to other: CAAnimation) {
		other.duration = duration
		other.beginTime = beginTime
		other.repeatCount = repeatCount
		other.autoreverses = autoreverses
		other.fillMode = fillMode
		other.isRemovedOnCompletion = isRemovedOnCompletion
		other.delegate = delegate
	}
	final func copied() -> CAAnimation {
		let copy = type(of: self).init()
		copyFields(to: copy)
		return copy
	}
}

open class CAPropertyAnimation: CAAnimation {
	public convenience init(keyPath path: String?) {
		self.init()
		self.keyPath = path
	}
	open var keyPath: String?

	override func copyFields(to other: CAAnimation) {
		super.copyFields(to: other)
		(other as? CAPropertyAnimation)?.keyPath = keyPath
	}
}

open class CABasicAnimation: CAPropertyAnimation {}

open class CAKeyframeAnimation: CAPropertyAnimation {
	open var values: [Any]?
	open var keyTimes: [NSNumber]?
	open var timingFunctions: [CAMediaTimingFunction]?

	override func copyFields(to other: CAAnimation) {
		super.copyFields(to: other)
		guard let other = other as? CAKeyframeAnimation else { return }
		other.values = values
		other.keyTimes = keyTimes
		other.timingFunctions = timingFunctions
	}
}

open class CALayer: NSObject {
	public override init() {}
	open var name: String?
	open var bounds = CGRect.zero
	open var position = CGPoint.zero
	open var zPosition: CGFloat = 0
	open var anchorPoint = CGPoint(x: 0.5, y: 0.5)
	open var transform = CATransform3DIdentity
	open var opacity: Float = 1
	open var masksToBounds = false
	open var contents: Any?
	open private(set) var sublayers: [CALayer]?
	private var animations: [String: CAAnimation] = [:]

	open func addSublayer(_ layer: CALayer) { sublayers = (sublayers ?? []) + [layer] }

	/// A layer holds a copy of what it is given.
	open func add(_ anim: CAAnimation, forKey key: String?) {
		animations[key ?? ""] = anim.copied()
	}
	open func animation(forKey key: String) -> CAAnimation? { return animations[key] }
	open func animationKeys() -> [String]? {
		return animations.isEmpty ? nil : animations.keys.sorted()
	}
	open func removeAnimation(forKey key: String) { finish(key, false) }
	open func removeAllAnimations() {
		for key in animations.keys.sorted() { finish(key, false) }
	}
	/// No clock runs here: an animation ends when it is told to.
	public func finish(_ key: String, _ finished: Bool) {
		guard let stopped = animations.removeValue(forKey: key) else { return }
		stopped.delegate?.animationDidStop(stopped, finished: finished)
	}
}

open class CATransaction: NSObject {
	open class func begin() {}
	open class func commit() {}
	open class func setDisableActions(_ flag: Bool) {}
}
