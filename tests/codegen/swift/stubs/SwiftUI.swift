// Stands in for SwiftUI: what wraps a view of the older frameworks.

import AppKit
import UIKit

@MainActor public protocol View {}

public struct UIViewRepresentableContext<Representable: UIViewRepresentable> {}

@MainActor public protocol UIViewRepresentable: View {
	associatedtype UIViewType: UIView
	typealias Context = UIViewRepresentableContext<Self>
	func makeUIView(context: Context) -> UIViewType
	func updateUIView(_ uiView: UIViewType, context: Context)
}

public struct NSViewRepresentableContext<Representable: NSViewRepresentable> {}

@MainActor public protocol NSViewRepresentable: View {
	associatedtype NSViewType: NSView
	typealias Context = NSViewRepresentableContext<Self>
	func makeNSView(context: Context) -> NSViewType
	func updateNSView(_ nsView: NSViewType, context: Context)
}
