"""Runs the real program on a virtual display, and sees what a person would perceive of it."""
