// Classes that generated code expects of the application it is built into.

import UIKit

class LFTPuppetView: UIView {
	var viewsByName: [String: UIView] = [:]
	var layersByName: [String: CALayer] = [:]
}

class LFTRecordableView: UIView {}
class LFTRecordableImageView: UIImageView {}
