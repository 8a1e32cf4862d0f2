// Stands in for CoreGraphics: what Foundation lacks of it where there is no such framework.

@_exported import Foundation

public typealias CFTimeInterval = Double

public struct CGAffineTransform: Sendable, Equatable {
	public var a, b, c, d, tx, ty: CGFloat

	public init(a: CGFloat, b: CGFloat, c: CGFloat, d: CGFloat, tx: CGFloat, ty: CGFloat) {
		(self.a, self.b, self.c, self.d, self.tx, self.ty) = (a, b, c, d, tx, ty)
	}
	public init(scaleX x: CGFloat, y: CGFloat) { self.init(a: x, b: 0, c: 0, d: y, tx: 0, ty: 0) }
	public init(rotationAngle angle: CGFloat) {
		let (sine, cosine) = (CGFloat(sin(Double(angle))), CGFloat(cos(Double(angle))))
		self.init(a: cosine, b: sine, c: -sine, d: cosine, tx: 0, ty: 0)
	}
	public static let identity = CGAffineTransform(scaleX: 1, y: 1)
	public func scaledBy(x: CGFloat, y: CGFloat) -> CGAffineTransform {
		return CGAffineTransform(a: a * x, b: b * x, c: c * y, d: d * y, tx: tx, ty: ty)
	}
}

public final class CGImage: @unchecked Sendable {
	public init() {}
}
