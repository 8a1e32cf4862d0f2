// Plays an exported class on the stand-ins: exits with the number of what is not as it should be.

import UIKit

@MainActor func play() -> Int32 {
	var problems: Int32 = 0
	func expect(_ holds: Bool, _ what: String) {
		if holds { return }
		print("not so: \(what)")
		problems += 1
	}
	UIImage.names = ["there.png", "photo.jpg"]
	let view = SceneView()
	expect(view.bounds.width == 320, "a view has the size of the canvas")
	let hero = view.viewsByName["hero"]
	expect((hero as? UIImageView)?.image?.name == "photo.jpg", "an image has its full name")
	let lost = view.viewsByName["lost"] as? UIImageView
	expect(lost != nil && lost?.image == nil, "an image that is missing leaves its view empty")

	var ended: [Bool] = []
	view.addWalkAnimation { ended.append($0) }
	let opacity = hero?.layer.animation(forKey: "walk_Opacity") as? CAKeyframeAnimation
	expect(opacity?.values as? [Float] == [1, 0.5], "values")
	expect(opacity?.keyTimes == [0, 1], "key times")
	expect(opacity?.duration == 0.5, "duration")
	expect(opacity?.fillMode == .both && opacity?.isRemovedOnCompletion == false, "the end is held")
	let images = hero?.layer.animation(forKey: "walk_ImageContents") as? CAKeyframeAnimation
	expect(images?.values?.count == 3, "an image that is missing keeps its place among others")
	expect(view.layer.animationKeys() == ["Walk"], "one animation tells the end")
	view.layer.finish("Walk", true)
	expect(ended == [true], "the end is told")
	view.addWalkAnimation(removedOnCompletion: true) { ended.append($0) }
	view.removeAllAnimations()
	expect(ended == [true, false], "removal is told")
	expect(hero?.layer.animationKeys() == nil, "all are removed")

	let long = { () -> CAKeyframeAnimation? in
		view.addLongAnimation()
		return hero?.layer.animation(forKey: "long_TranslationX") as? CAKeyframeAnimation
	}()
	expect(long?.values as? [Float] == (0 ..< 250).map { Float($0) }, "a list in parts is whole")
	expect(long?.keyTimes?.count == 250 && long?.timingFunctions?.count == 249, "so are its times")

	view.applyTurnState()
	expect(hero?.alpha == 0.25, "what stays the same in all frames")
	view.applyTurnPercent(0.5)
	expect(abs((hero?.center.x ?? 0) - 60) < 0.01, "the frame in the middle")
	view.applyTurnPercent(.nan)
	expect(abs((hero?.center.x ?? 0) - 10) < 0.01, "no number is the first frame")
	view.applyTurnFrame(99)
	view.animateTurnForPlaybackFromPercentValues([0, 0.5], andTimes: [0, 2])
	let turn = hero?.layer.animation(forKey: "hero_TranslationX") as? CAKeyframeAnimation
	expect(turn?.values as? [Float] == [10, 60], "playback")
	return problems
}

@main struct Main {
	static func main() { exit(MainActor.assumeIsolated { play() }) }
}
